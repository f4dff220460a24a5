#include "sitedb/DomainTable.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "base/codepage.h"
#include "base/numbers.h"
#include "sitedb/SiteUrl.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

// Up to here looking at each entry costs less than the index does.
constexpr size_t LongList = 16;

static_assert(std::endian::native == std::endian::little, "the words of a key have their first byte lowest");

// Each byte of eight repeated.
constexpr std::uint64_t Bytes(std::uint8_t byte) { return 0x0101010101010101U * byte; }

template <typename Word = std::uint64_t>
std::uint64_t WordAt(const char* bytes) {
    Word word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// The last `count` bytes of a text, 1 to 7, as a word, by reads that do not depend on the count.
std::uint64_t LastBytes(TextView text, size_t count) {
    const char* const end = text.data() + text.size();
    if (text.size() >= 8) return WordAt(end - 8) >> (64 - 8 * count);
    if (count >= 4) {
        return WordAt<std::uint32_t>(end - count) | WordAt<std::uint32_t>(end - 4) << 8 * (count - 4);
    }
    std::uint64_t word = 0;
    for (size_t back = 1; back <= count; ++back)
        word = word << 8 | static_cast<std::uint8_t>(end[-static_cast<std::ptrdiff_t>(back)]);
    return word;
}

// A scrambled byte is no letter of anybody's code page: on every machine a list stands in the same order.
char UpperByte(char byte) { return Windows1252.Upper[static_cast<std::uint8_t>(byte)]; }

// With bytes beyond ASCII, which are rare.
[[gnu::noinline]] std::uint64_t UpperBytes(std::uint64_t word) {
    char bytes[8];
    std::memcpy(bytes, &word, sizeof bytes);
    for (char& byte : bytes) byte = UpperByte(byte);
    return WordAt(bytes);
}

// Eight bytes of a scrambled key in upper case.
inline std::uint64_t UpperWord(std::uint64_t word) {
    if ((word & Bytes(0x80)) != 0) return UpperBytes(word);
    // The top bit of a byte is set where it is 'a' or more, and is not where it is 'z' or less.
    const std::uint64_t fromA = word + Bytes(0x80 - 'a');
    const std::uint64_t fromBehindZ = word + Bytes(0x80 - 'z' - 1);
    return word ^ ((fromA & ~fromBehindZ & Bytes(0x80)) >> 2);
}

// Runs `visit(word)` for the folded key of a domain, eight bytes at a time, the last filled up with zeros.
template <typename Visit>
void ForEachKeyWord(TextView domain, Visit visit) {
    const char* const key = KeyFrom(domain.size());
    size_t offset = 0;
    for (; offset + 8 <= domain.size(); offset += 8)
        visit(UpperWord(WordAt(domain.data() + offset) ^ WordAt(key + offset)));
    const size_t left = domain.size() - offset;
    if (left == 0) return;
    const std::uint64_t ofKey = WordAt(key + offset) & ((std::uint64_t{1} << 8 * left) - 1);
    visit(UpperWord(LastBytes(domain, left) ^ ofKey));
}

bool IsNumber(TextView category) {
    if (category.size() == 1 && category[0] >= '0' && category[0] <= '9') return true;
    return TrapOr(
        false,
        [&] {
            ToDouble(category);
            return true;
        },
        [](const RuntimeError&) { /* no number: that is the answer */ });
}

}  // namespace

DomainHash::DomainHash(TextView domain) {
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
    std::uint64_t sum = 0;
    std::uint64_t mixed = 0;
    ForEachKeyWord(domain, [&](std::uint64_t word) {
        sum ^= word;
        mixed = (mixed ^ word) * factor;
        mixed ^= mixed >> 32;
    });
    OfKey = static_cast<std::int32_t>(static_cast<std::uint32_t>(sum ^ sum >> 32));
    OfIndex = static_cast<std::uint32_t>(mixed * factor >> 32);
}

TextView DomainKey::Checked(TextView domain) {
    if (domain.empty()) throw Error(ErrorNumber::Subscript);
    NarrowToInt16(static_cast<std::int64_t>(domain.size()));
    return domain;
}

bool DomainKey::HaveOneKey(TextView one, TextView other) {
    if (one.size() != other.size()) return false;
    const char* const key = KeyFrom(one.size());
    for (size_t offset = 0; offset < one.size(); ++offset) {
        const auto folded = [&](TextView domain) { return UpperByte(static_cast<char>(domain[offset] ^ key[offset])); };
        if (folded(one) != folded(other)) return false;
    }
    return true;
}

DomainTable::Location DomainTable::Find(const DomainKey& key, TextView url, TextView decoded) const {
    Location found;
    found.Slot = m_Slots.Find(key.Hash(), [&](std::int32_t slot) {
        if (HasUrl(FirstOf(slot), url)) found.Entry = FirstOf(slot);
        return found.Entry != 0 || IsKeyOf(key, slot);
    });
    if (found.Slot != 0 && found.Entry == 0) FindInList(found, url, decoded);
    return found;
}

std::int32_t DomainTable::FindList(const DomainKey& key, std::optional<SiteRecord>& first) const {
    return m_Slots.Find(key.Hash(), [&](std::int32_t slot) {
        first.emplace(Scrambled(FirstOf(slot)));
        return key.IsKeyOf(DecodedUrl(*first).Host());
    });
}

void DomainTable::PrefetchLists(const std::vector<DomainHash>& domains) const {
    std::vector<std::int32_t> slots;
    slots.reserve(domains.size());
    for (const DomainHash& hash : domains) {
        const std::int32_t slot = m_Slots.FindAny(hash.OfKey, hash.OfIndex);
        if (slot == 0) continue;
        m_Slots.Prefetch(slot);
        slots.push_back(slot);
    }
    for (const std::int32_t slot : slots) m_Entries.Prefetch(FirstOf(slot));
}

bool DomainTable::IsKeyOf(const DomainKey& key, std::int32_t slot) const {
    return key.IsKeyOf(DecodedUrl(SiteRecord(Scrambled(FirstOf(slot)))).Host());
}

void DomainTable::FindInList(Location& found, TextView url, TextView decoded) const {
    if (IsLong(found.Slot)) {
        found.Hash = HashOfUrl(decoded);
        found.Entry = m_Urls.Find(found.Hash, [&](Position entry) { return HasUrl(entry, url); });
        return;
    }
    const Position first = FirstOf(found.Slot);
    Position entry = Next(first, first);
    while (entry != 0 && !HasUrl(entry, url)) entry = Next(entry, first);
    found.Entry = entry;
}

bool DomainTable::HasUrl(Position entry, TextView url) const {
    const TextView scrambled = Scrambled(entry);
    if (url.size() >= scrambled.size()) return false;
    const char* const key = KeyFrom(scrambled.size());
    const auto isPlain = [&](size_t offset, char character) { return (scrambled[offset] ^ key[offset]) == character; };
    if (!isPlain(url.size(), FieldEnd)) return false;
    size_t offset = 0;
    for (; offset + 8 <= url.size(); offset += 8) {
        if ((WordAt(scrambled.data() + offset) ^ WordAt(key + offset)) != WordAt(url.data() + offset)) return false;
    }
    for (; offset < url.size(); ++offset) {
        if (!isPlain(offset, url[offset])) return false;
    }
    return url.find(FieldEnd) == TextView::npos;
}

void DomainTable::Add(const DomainKey& key, const Location& found, TextView decoded, TextView category,
                      TextView scrambled) {
    std::int32_t slot = found.Slot;
    // Room first: behind it nothing fails.
    m_Entries.Reserve(scrambled.size());
    if (slot == 0) {
        slot = m_Slots.Create(key.Hash());
        m_Slots.Number(slot, m_Entries.Append(scrambled, 0));
    } else if (IsLong(slot) || MakeLong(slot)) {
        const std::uint32_t hash = found.Hash != 0 ? found.Hash : HashOfUrl(decoded);
        const Pattern pattern = decoded.empty() ? PatternOf(scrambled) : Pattern(hash, decoded.size(), category);
        MakeRoom(slot, pattern);
        AddToIndex(slot, pattern, m_Entries.Append(scrambled, FirstOf(slot)));
    } else {
        m_Entries.Append(scrambled, FirstOf(slot));
    }
    ++m_EntryCount;
}

bool DomainTable::Remove(const DomainKey& key, const Location& found) {
    if (IsLong(found.Slot)) RemoveFromIndex(found);
    const Position first = m_Entries.Remove(found.Entry, FirstOf(found.Slot));
    --m_EntryCount;
    if (first == 0) {
        m_Slots.Remove(found.Slot, key.Hash());
    } else {
        BeginAt(found.Slot, first);
    }
    return first == 0;
}

void DomainTable::RemoveAll() { *this = {}; }

void DomainTable::PackIfSparse() {
    constexpr std::uint64_t worthIt = 1U << 20;
    if (m_Entries.Removed() < std::max(m_Entries.Used(), worthIt)) return;
    EntryLists packed;
    std::vector<Position> begins;
    m_Slots.Walk([&](std::int32_t slot) {
        const Position first = FirstOf(slot);
        begins.push_back(0);
        for (Position entry = first; entry != 0; entry = Next(entry, first)) {
            const Position moved = packed.Append(Scrambled(entry), begins.back());
            if (begins.back() == 0) begins.back() = moved;
        }
    });
    m_Entries = std::move(packed);
    m_Urls = {};
    m_Lengths.clear();
    m_Uncounted.clear();
    size_t list = 0;
    m_Slots.Walk([&](std::int32_t slot) {
        const Position first = begins[list++];
        BeginAt(slot, first);
        if (!IsLong(slot)) return;
        for (Position entry = first; entry != 0; entry = Next(entry, first)) {
            const Pattern pattern = PatternOf(Scrambled(entry));
            MakeRoom(slot, pattern);
            AddToIndex(slot, pattern, entry);
        }
    });
}

std::uint32_t DomainTable::HashOfUrl(TextView decoded) {
    UrlHash hash;
    size_t offset = 0;
    for (; offset + 8 <= decoded.size(); offset += 8) hash.Add(decoded.data() + offset);
    char rest[8] = {};
    std::copy(decoded.begin() + static_cast<std::ptrdiff_t>(offset), decoded.end(), rest);
    return hash.WithRest(rest, decoded.size());
}

DomainTable::Pattern::Pattern(std::uint32_t hash, size_t length, TextView category)
    : Hash(hash), Length(length), IsCounted(IsNumber(category)) {}

DomainTable::Pattern DomainTable::PatternOf(TextView scrambled) {
    const SiteRecord record(scrambled);
    const DecodedUrl url(record);
    return {HashOfUrl(url.Whole()), url.Whole().size(), record.Category()};
}

bool DomainTable::MakeLong(std::int32_t slot) {
    const Position first = FirstOf(slot);
    std::vector<std::pair<Pattern, Position>> members;
    size_t length = 0;
    for (Position entry = first; entry != 0; entry = Next(entry, first)) ++length;
    if (length < LongList) return false;
    for (Position entry = first; entry != 0; entry = Next(entry, first)) {
        members.emplace_back(PatternOf(Scrambled(entry)), entry);
        MakeRoom(slot, members.back().first);
    }
    m_Urls.Reserve(members.size());
    for (const auto& [pattern, entry] : members) AddToIndex(slot, pattern, entry);
    m_Slots.Number(slot, first | Indexed);
    return true;
}

void DomainTable::MakeRoom(std::int32_t slot, const Pattern& pattern) {
    m_Urls.Reserve(1);
    if (pattern.Length >= m_Lengths.size()) m_Lengths.resize(pattern.Length + 1);
    if (!pattern.IsCounted) m_Uncounted.try_emplace(slot, 0);
}

void DomainTable::AddToIndex(std::int32_t slot, const Pattern& pattern, Position entry) {
    ++m_Lengths[pattern.Length];
    m_Urls.Add(pattern.Hash, entry);
    if (pattern.IsCounted) return;
    Position& first = m_Uncounted[slot];
    if (first == 0) first = entry;
}

void DomainTable::RemoveFromIndex(const Location& found) {
    const Pattern pattern = PatternOf(Scrambled(found.Entry));
    --m_Lengths[pattern.Length];
    m_Urls.Remove(pattern.Hash, found.Entry);
    if (FirstUncounted(found.Slot) != found.Entry) return;
    // The next one of its kind is the first now. Each stretch of a list is searched only once this way.
    Position next = found.Entry;
    do {
        next = Next(next, FirstOf(found.Slot));
    } while (next != 0 && IsNumber(SiteRecord(Scrambled(next)).Category()));
    m_Uncounted.erase(found.Slot);
    if (next != 0) m_Uncounted.emplace(found.Slot, next);
}

}  // namespace tb
