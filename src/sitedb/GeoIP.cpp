#include "sitedb/GeoIP.h"

#include <algorithm>

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/Base64.h"
#include "urlcheck/url/inet_addr.h"

namespace tb {

namespace {

// Of a record of the table.
constexpr std::int32_t AddressSize = 4;
constexpr std::int32_t LastOffset = 4;
constexpr std::int32_t CodeOffset = 8;
constexpr std::int32_t RecordSize = 10;

std::uint8_t ByteAt(TextView bytes, std::int32_t offset) {
    return static_cast<std::uint8_t>(At(bytes, static_cast<size_t>(offset)));
}

// Which of two runs of bytes is smaller, told by the first byte that differs: negative for `a`, 0 for equal runs.
// Error 9 where one of them ends before a difference.
int CompareBytes(TextView a, std::int32_t offsetA, TextView b, std::int32_t offsetB, std::int16_t length) {
    for (std::int32_t index = 0; index < length; ++index) {
        const int difference = ByteAt(a, offsetA + index) - ByteAt(b, offsetB + index);
        if (difference != 0) return difference;
    }
    return 0;
}

bool BytesLess(TextView a, std::int32_t offsetA, TextView b, std::int32_t offsetB, std::int16_t length) {
    return CompareBytes(a, offsetA, b, offsetB, length) < 0;
}

bool BytesLessEq(TextView a, std::int32_t offsetA, TextView b, std::int32_t offsetB, std::int16_t length) {
    return CompareBytes(a, offsetA, b, offsetB, length) <= 0;
}

// Four bytes in network order, all 255 for no address.
Text AddressBytes(TextView address) {
    const IPv4 value = inet_addr(address).value_or(0xFFFFFFFFU);
    Text bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFFU);
    return bytes;
}

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

bool IsLetter(char character) {
    const char folded = static_cast<char>(character | 0x20);
    return folded >= 'a' && folded <= 'z';
}

// What the text of a URL shows. Positions are indices from 0.
struct UrlTraits {
    bool HasUser = false;
    bool NoPort = true;
    bool IsAddress = false;
    bool ShortAddress = false;
    int Digits = 0;
    int Specials = 0;
    int Percents = 0;
    int Strange = 0;
};

struct HostBounds {
    size_t Start = 0;
    // Behind the last character.
    size_t End = 0;
};

// For a score of how a URL looks, not for finding it: UrlAuthority keeps the user name and wants a scheme.
HostBounds FindHost(TextView url, UrlTraits& traits) {
    HostBounds host;
    const size_t slashes = url.find("//");
    if (slashes != TextView::npos) host.Start = slashes + 2;
    host.End = std::min(url.find('/', host.Start), url.size());
    const size_t user = url.find('@', host.Start);
    // A user name with nothing behind it is none.
    traits.HasUser = user != TextView::npos && user + 1 < host.End;
    if (traits.HasUser) host.Start = user + 1;
    return host;
}

// Counts characters up to the end of the URL, those of the host in their own way. `host` ends at the last colon in it.
void ScanCharacters(TextView url, HostBounds& host, UrlTraits& traits) {
    const size_t hostEnd = host.End;
    for (size_t index = host.Start; index < url.size(); ++index) {
        const char character = url[index];
        const auto code = static_cast<std::uint8_t>(character);
        if (character == '%') ++traits.Percents;
        if (code < 32 || code > 126) ++traits.Strange;
        if (index >= hostEnd) continue;
        if (IsDigit(character)) {
            ++traits.Digits;
        } else if (!IsLetter(character)) {
            ++traits.Specials;
        }
        if (character != ':') continue;
        host.End = index;
        // All that follows counts, the path too.
        if (Trim(url.substr(index + 1)) != "80") traits.NoPort = false;
    }
}

UrlTraits TraitsOf(TextView url) {
    UrlTraits traits;
    HostBounds bounds = FindHost(url, traits);
    ScanCharacters(url, bounds, traits);
    const TextView host = url.substr(bounds.Start, bounds.End - bounds.Start);
    traits.IsAddress = inet_addr(host).has_value();
    traits.ShortAddress = traits.IsAddress && SplitViews(host, '.').size() < 4;
    return traits;
}

double ScoreOf(const UrlTraits& traits) {
    double score = 0;
    if (traits.NoPort) score += 2;
    // Counted twice: a user name in a URL hides where it leads.
    if (traits.HasUser) score += 3 + 3;
    if (traits.ShortAddress) score += 5;
    if (traits.IsAddress) score += 2;
    score += traits.Digits >= 4 ? 1 : traits.Digits / 4.0;
    if (traits.Specials >= 4) {
        score += 2;
    } else if (traits.Specials >= 2) {
        score += 2 * (traits.Specials - 1) / 3.0;
    }
    score += traits.Percents / 5.0;
    if (traits.Strange > 0) score += 3 * ((traits.Strange - 1) / 2.0 + 1.334);
    return score;
}

// Occurrences that overlap count each; an empty word has none.
int CountOccurrences(TextView text, TextView word) {
    int count = 0;
    if (word.empty()) return count;
    for (size_t found = 0; (found = text.find(word, found)) != TextView::npos; ++found) ++count;
    return count;
}

}  // namespace

void GeoIP::LoadCountries(const Element::Children& elements) {
    for (const ElementPtr& element : elements) {
        const Text key = UpperCase(element->FindAttributeValue("ALPHA2"));
        const Text item = element->FindAttributeValue("NAME") + "\t" + element->FindAttributeValue("WEIGHT");
        if (!m_Countries.emplace(key, item).second) throw Error(ErrorNumber::DuplicateKey);
    }
}

void GeoIP::LoadIPCountry(const Text& Base64Text) {
    const TextView trimmed = Trim(Base64Text);
    if (trimmed.empty()) return;
    m_Ranges = Base64Decode(trimmed);
    m_RangesLoaded = true;
}

bool GeoIP::IsSorted() const {
    const auto size = static_cast<std::int64_t>(m_Ranges.size());
    if (!m_RangesLoaded) return true;
    if (size == 0 || size > INT32_MAX || size % RecordSize != 0) return false;
    std::int32_t before = 0;
    for (std::int32_t record = 0; record < size; before = record, record += RecordSize) {
        const bool isRange = BytesLessEq(m_Ranges, record, m_Ranges, record + LastOffset, AddressSize);
        if (!isRange || BytesLess(m_Ranges, record, m_Ranges, before, AddressSize)) return false;
    }
    return true;
}

Text GeoIP::CountryOfAddress(TextView Address) const {
    if (!m_RangesLoaded) return {};
    const std::int32_t index = FindRange(Address);
    return index < 0 ? Text() : CountryCodeAt(index);
}

Text GeoIP::CountryCodeAt(std::int32_t Index) const {
    const std::int32_t offset = Index * RecordSize + CodeOffset;
    return {static_cast<char>(ByteAt(m_Ranges, offset)), static_cast<char>(ByteAt(m_Ranges, offset + 1))};
}

std::int32_t GeoIP::FindRange(TextView Address) const {
    const Text address = AddressBytes(Address);
    const std::int32_t highest = NarrowToInt32(static_cast<std::int64_t>(m_Ranges.size())) - 1;
    if (BytesLess(address, 0, m_Ranges, 0, AddressSize)) return -1;
    // One byte before the last record's last address. Tables are made for that: they end in a record whose first
    // address ends high, so that this rejects nothing but what lies above the table.
    if (BytesLess(m_Ranges, highest - 6, address, 0, AddressSize)) return -1;
    std::int32_t low = 0;
    std::int32_t high = highest / RecordSize;
    while (low <= high) {
        const std::int32_t mid = low + (high - low) / 2;
        const std::int32_t offset = mid * RecordSize;
        if (BytesLess(address, 0, m_Ranges, offset, AddressSize)) {
            high = mid - 1;
        } else if (BytesLessEq(address, 0, m_Ranges, offset + LastOffset, AddressSize)) {
            return mid;
        } else if (BytesLess(m_Ranges, offset, address, 0, AddressSize)) {
            low = mid + 1;
        } else {
            // The record ends before it begins.
            return -1;
        }
    }
    return -1;
}

double GeoIP::WeightOfAddresses(TextView Addresses, Text& Country) const {
    double weight = 0;
    for (const TextView address : SplitViews(Addresses, ' ')) {
        const Text code = CountryOfAddress(address);
        if (code.empty()) continue;
        const auto country = m_Countries.find(UpperCase(code));
        if (country == m_Countries.end()) throw Error(ErrorNumber::InvalidCall);
        const std::vector<TextView> fields = SplitViews(country->second, '\t');
        // The last address decides, whatever the weights.
        weight = ToDouble(At(fields, 1)) / 100;
        Country = At(fields, 0);
    }
    return weight;
}

double GeoIP::CountEvilWords(TextView URL) const {
    const Text text = LowerCase(RemoveAll(RemoveAll(URL, "-"), "."));
    const Text evilWords = m_Host.EvilWords();
    const std::vector<TextView> words = SplitViews(evilWords, ',');
    int count = 0;
    // The data has a filler in front.
    for (size_t index = 1; index < words.size(); ++index) count += CountOccurrences(text, words[index]);
    return count;
}

bool GeoIP::ScoreURL(const Text& URL, const Text& Addresses, double& Score, Text& Country) const {
    Country.clear();
    const double weight = WeightOfAddresses(Addresses, Country);
    const double words = CountEvilWords(URL);
    const double foreign = Country == m_Host.HomeCountry() ? 0 : 2 * weight;
    Score = foreign + ScoreOf(TraitsOf(URL)) + words;
    return true;
}

}  // namespace tb
