// An XML document: one tree, parsed from a file or a text. Bytes are characters; declarations of an encoding are read
// over.
#pragma once

#include <filesystem>

#include "components/tbXML/XmlParser.h"
#include "platform/Files.h"

namespace tb {

class Document {
public:
    // The tree replaces what was there. Raises what reading the file raises, or an error of the parser
    // (components/tbXML/XmlParser.h), whose description says what is wrong and where; the old tree then stays.
    void Load(Files& files, const std::filesystem::path& fileName) { LoadXML(ReadWholeFile(files, fileName)); }
    void LoadXML(TextView text) { m_Root = ParseXml(text); }

    // Null while nothing was loaded.
    const ElementPtr& Root() const { return m_Root; }

    // The children of the root; none without a root.
    Element::Children::const_iterator begin() const {
        return m_Root == nullptr ? Element::Children::const_iterator() : m_Root->begin();
    }
    Element::Children::const_iterator end() const {
        return m_Root == nullptr ? Element::Children::const_iterator() : m_Root->end();
    }

private:
    ElementPtr m_Root;
};

}  // namespace tb
