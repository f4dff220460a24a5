// The entries of the site list by their domain: a table whose keys are scrambled domains, folded to upper case in that
// form, and whose values are lists of scrambled entries in the order of adding. It is walked in the order of a
// HashTable that was filled and emptied the same way. Keys are not stored: each follows from the entries of its list.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <optional>

#include "sitedb/EntryLists.h"
#include "sitedb/HashSlots.h"
#include "sitedb/SiteRecord.h"

namespace tb {

// What the key of a domain hashes to, without the key.
struct DomainHash {
    // Of a domain of 1 to 32767 characters.
    explicit DomainHash(TextView domain);

    std::int32_t OfKey = 0;  // as HashSlots::HashOfKey
    std::uint32_t OfIndex = 0;
};

// The key of a domain. Raises error 9 for an empty one and for one with a negative bucket (see HashSlots), error 6 from
// 32768 characters on. Different domains can have one key.
class DomainKey {
public:
    // Views the domain, which must outlive it.
    explicit DomainKey(TextView domain) : DomainKey(Checked(domain), DomainHash(domain)) {}
    // With the hash of the domain, which is checked already.
    DomainKey(TextView domain, const DomainHash& hash) : m_Domain(domain), m_Hash(hash.OfKey, hash.OfIndex) {}

    // False for a domain that can have no key.
    static bool HasHash(TextView domain) { return !domain.empty() && domain.size() >> 15 == 0; }

    bool IsKeyOf(TextView domain) const { return domain == m_Domain || HaveOneKey(domain, m_Domain); }
    const KeyHash& Hash() const { return m_Hash; }

private:
    static TextView Checked(TextView domain);
    static bool HaveOneKey(TextView one, TextView other);

    TextView m_Domain;
    KeyHash m_Hash;
};

class DomainTable {
public:
    using Position = EntryLists::Position;
    // Where an entry lies: the list of a key, and the entry in it; 0 each when there is none. In a long list also what
    // the URL hashes to.
    struct Location {
        std::int32_t Slot = 0;
        Position Entry = 0;
        std::uint32_t Hash = 0;
    };

    // Where a stored URL is, or would be, which is given encoded and decoded; empty instead of decoded where that is
    // not what its record says.
    Location Find(const DomainKey& key, TextView url, TextView decoded) const;
    // The list of a key, with the record of its first entry; 0 when there is none.
    std::int32_t FindList(const DomainKey& key, std::optional<SiteRecord>& first) const;
    // Prefetches where the search for a domain begins.
    void Prefetch(const DomainHash& domain) const { m_Slots.Prefetch(domain.OfKey, domain.OfIndex); }
    // For domains of which that is on its way: prefetches what the rest of the search and a look at the lists will
    // read, one step of it for all domains, then the next.
    void PrefetchLists(const std::vector<DomainHash>& domains) const;
    // The first entry of a list, and the one behind an entry, 0 at the end.
    Position FirstOf(std::int32_t slot) const { return m_Slots.Number(slot) & ~Indexed; }
    Position Next(Position entry, Position first) const { return m_Entries.Next(entry, first); }
    TextView Scrambled(Position entry) const { return m_Entries.Bytes(entry); }

    // True for a list in which prefixes are found without looking at each entry.
    bool IsLong(std::int32_t slot) const { return (m_Slots.Number(slot) & Indexed) != 0; }
    // Runs `visit(entry)` for those entries of all long lists whose decoded URL may be a prefix of a text, which is
    // given in two pieces, in no particular order. In a list a higher position is a later entry.
    template <typename Visit>
    void ForEachPrefix(TextView begin, TextView end, Visit visit) const {
        ShortMemory memory;
        const size_t size = std::min(begin.size() + end.size(), m_Lengths.empty() ? 0 : m_Lengths.size() - 1);
        char* const text = memory.Take(begin.size() + end.size() + 8);
        std::copy(end.begin(), end.end(), std::copy(begin.begin(), begin.end(), text));
        UrlHash hash;
        for (size_t length = 1; length <= size; ++length) {
            if (m_Lengths[length] != 0) m_Urls.FindAll(hash.WithRest(text + (length & ~size_t{7}), length), visit);
            if (length % 8 == 7 && length < size) hash.Add(text + (length & ~size_t{7}));
        }
    }
    // The first entry of a long list whose category is no number, or 0.
    Position FirstUncounted(std::int32_t slot) const {
        const auto found = m_Uncounted.find(slot);
        return found == m_Uncounted.end() ? 0 : found->second;
    }

    // Appends the scrambled entry of a URL that is not there to the list of a key; `found` is what Find says. Raises
    // error 7 when there is no room; nothing has changed then.
    void Add(const DomainKey& key, const Location& found, TextView decoded, TextView category, TextView scrambled);
    // Takes out what Find has found. True when it was the last entry of its list: the key is gone, too.
    bool Remove(const DomainKey& key, const Location& found);
    void RemoveAll();
    // Gives the room of removed entries back once they take more than those that are left. Entries move.
    void PackIfSparse();

    std::int32_t Count() const { return m_Slots.ItemCount(); }
    // Entries of all lists.
    std::int64_t EntryCount() const { return m_EntryCount; }

    // Runs `visit(scrambled)` for all entries, in walk order of the keys and in list order inside a key.
    template <typename Visit>
    void Walk(Visit visit) const {
        // Lists that have changed lie anywhere in memory: each is prefetched some steps before its turn.
        std::array<Position, 8> coming{};
        size_t step = 0;
        const auto exchange = [&](Position first) {
            Position& begin = coming[step++ % coming.size()];
            m_Entries.Walk(begin, visit);
            begin = first;
        };
        m_Slots.Walk([&](std::int32_t slot) {
            m_Entries.Prefetch(FirstOf(slot));
            exchange(FirstOf(slot));
        });
        for (size_t left = 0; left < coming.size(); ++left) exchange(0);
    }

private:
    // A slot's number is where its list begins. With this bit on top the list is a long one: its entries are in m_Urls
    // by their decoded URLs.
    static constexpr std::uint32_t Indexed = EntryLists::End;

    // Of a URL, eight bytes at a time, so that the hashes of all its beginnings cost little more than that of the
    // whole.
    class UrlHash {
    public:
        // The next eight bytes.
        void Add(const char* bytes) { m_Value = Mixed(m_Value ^ WordAt(bytes)); }
        // That of all `length` bytes: those added, and the rest, fewer than eight. Eight are read.
        std::uint32_t WithRest(const char* rest, size_t length) const {
            const std::uint64_t used = (std::uint64_t{1} << length % 8 * 8) - 1;
            return static_cast<std::uint32_t>(Mixed(Mixed(m_Value ^ (WordAt(rest) & used)) + length) >> 32);
        }

    private:
        static std::uint64_t WordAt(const char* bytes) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes, sizeof word);
            return word;
        }
        static std::uint64_t Mixed(std::uint64_t value) {
            value *= 0x9E3779B97F4A7C15U;
            return value ^ value >> 32;
        }

        std::uint64_t m_Value = 0;
    };
    // What an index has of an entry: its decoded URL, and whether its category is a number.
    struct Pattern {
        Pattern(std::uint32_t hash, size_t length, TextView category);

        std::uint32_t Hash;
        size_t Length;
        bool IsCounted;
    };
    static std::uint32_t HashOfUrl(TextView decoded);
    static Pattern PatternOf(TextView scrambled);

    // The list of a slot begins elsewhere now.
    void BeginAt(std::int32_t slot, Position first) { m_Slots.Number(slot, first | (m_Slots.Number(slot) & Indexed)); }
    bool IsKeyOf(const DomainKey& key, std::int32_t slot) const;
    void FindInList(Location& found, TextView url, TextView decoded) const;
    bool HasUrl(Position entry, TextView url) const;
    // True when the list is a long one now.
    bool MakeLong(std::int32_t slot);
    // With room made, adding does not fail.
    void MakeRoom(std::int32_t slot, const Pattern& pattern);
    void AddToIndex(std::int32_t slot, const Pattern& pattern, Position entry);
    void RemoveFromIndex(const Location& found);

    HashSlots m_Slots;
    EntryLists m_Entries;
    HashIndex m_Urls;
    std::vector<std::uint32_t> m_Lengths;          // how many indexed URLs have that length
    std::map<std::int32_t, Position> m_Uncounted;  // by slot
    std::int64_t m_EntryCount = 0;
};

}  // namespace tb
