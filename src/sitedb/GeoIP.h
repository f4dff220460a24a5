// In which country a web server stands, and how suspicious a URL looks from its text alone. The result is for people to
// read; nothing is blocked by it.
// Thread: the user-interface thread. Table format: docs/formats/reference.md.
#pragma once

#include <cstdint>
#include <unordered_map>

#include "components/tbXML/Element.h"

namespace tb {

// What the score asks of the program around it.
class GeoIPHost {
public:
    virtual ~GeoIPHost() = default;
    // The evil words of the reference data, separated by ","; the first one is never looked for. Error 5 when there are
    // none.
    virtual Text EvilWords() = 0;
    // The name of the user's own country; empty for none.
    virtual Text HomeCountry() = 0;
};

// Nothing here traps its errors: they go to the caller.
class GeoIP {
public:
    // `host` must outlive the object.
    explicit GeoIP(GeoIPHost& host) : m_Host(host) {}
    GeoIP(const GeoIP&) = delete;
    GeoIP& operator=(const GeoIP&) = delete;

    // Adds countries by their attributes ALPHA2, NAME and WEIGHT (per cent). Error 457 for a code that is there
    // already, in whatever case; those before it stay.
    void LoadCountries(const Element::Children& elements);
    // Replaces the table of address ranges; a text of blanks changes nothing. The table itself is not checked.
    void LoadIPCountry(const Text& Base64Text);

    // The table of address ranges is whole records in the order that a search needs, or there is none.
    bool IsSorted() const;

    // The score of the URL, and the NAME of the country of the last address, of those separated by blanks, that lies in
    // the table; empty when none does. Always True. Raises 5 for a country code that was not loaded, 13 for a weight
    // that is no number, 9 for a table that ends in the middle of a record, and what the host raises.
    bool ScoreURL(const Text& URL, const Text& Addresses, double& Score, Text& Country) const;

private:
    // The ALPHA2 code, or an empty text.
    Text CountryOfAddress(TextView Address) const;
    // The number of the record, or -1.
    std::int32_t FindRange(TextView Address) const;
    Text CountryCodeAt(std::int32_t Index) const;
    double WeightOfAddresses(TextView Addresses, Text& Country) const;
    double CountEvilWords(TextView URL) const;

    GeoIPHost& m_Host;
    // NAME, TAB, WEIGHT by the code in upper case.
    std::unordered_map<Text, Text> m_Countries;
    // Records of ten bytes: first and last address in network order, country code.
    Text m_Ranges;
    bool m_RangesLoaded = false;
};

}  // namespace tb
