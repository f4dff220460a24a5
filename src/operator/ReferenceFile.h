// A reference document as the tool uses it: for the names of categories, the countries, the address table and the
// words.
#pragma once

#include <map>
#include <memory>

#include "platform/Files.h"
#include "sitedb/GeoIP.h"

namespace tb {

class ReferenceFile : public GeoIPHost {
public:
    // The document that the program knows by itself.
    ReferenceFile();
    // A document in a file, plain or in its frame. Raises an InputError that names the file.
    ReferenceFile(Files& files, const Text& path);

    // The name of a category by its ID; error 91 for an unknown one.
    Text CategoryName(const Text& id) const;

    // Gives countries and table to `geo`. Raises an InputError for data that cannot be used.
    void Fill(GeoIP& geo) const;

    Text EvilWords() override { return m_Words; }
    Text HomeCountry() override { return Home; }

    // The name of the country that adds nothing to a score; empty for none.
    Text Home;

private:
    ElementPtr m_Root;
    // What messages call the document.
    Text m_Path;
    Text m_Words;
    // Names that were asked for, by ID as it was given: a search for each hit would be a good part of its verdict.
    mutable std::map<Text, Text> m_Names;
};

}  // namespace tb
