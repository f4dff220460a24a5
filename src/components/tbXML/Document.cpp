#include "components/tbXML/Document.h"

#include "components/tbXML/XmlParser.h"

namespace tb {

void Document::Load(Files& files, const std::filesystem::path& fileName) { LoadXML(ReadWholeFile(files, fileName)); }

void Document::LoadXML(TextView text) { m_Root = ParseXml(text); }

Element::Children::const_iterator Document::begin() const {
    return m_Root == nullptr ? Element::Children::const_iterator() : m_Root->begin();
}

Element::Children::const_iterator Document::end() const {
    return m_Root == nullptr ? Element::Children::const_iterator() : m_Root->end();
}

}  // namespace tb
