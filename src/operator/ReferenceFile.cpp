#include "operator/ReferenceFile.h"

#include "base/errors.h"
#include "commandline/InputFiles.h"
#include "commandline/Options.h"
#include "components/tbXML/Document.h"
#include "operator/LastLine.h"
#include "refdata/BuiltInReference.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

ElementPtr Parse(TextView text) {
    Document document;
    document.LoadXML(text);
    return document.Root();
}

// The text of a document that may lie in its frame.
Text Unframed(const Text& content, const Text& path) {
    // No frame begins with the sign that every document begins with.
    const TextView trimmed = Trim(content);
    if (!trimmed.empty() && trimmed.front() == '<') return content;
    LastLine log;
    Text plain;
    if (!ChkEncryptString(content, plain, log)) {
        throw InputError(path + ": neither an XML document nor an intact frame around one");
    }
    return plain;
}

}  // namespace

ReferenceFile::ReferenceFile() : m_Root(Parse(BuiltInReference())), m_Path("the built-in document") {}

ReferenceFile::ReferenceFile(Files& files, const Text& path) : m_Path(path) {
    constexpr const char* expected = "a reference document";
    const Text plain = Unframed(ReadInputFile(files, path, expected), path);
    try {
        m_Root = Parse(plain);
    } catch (const RuntimeError& error) {
        throw UnreadableFile(path, error, expected);
    }
    if (const ElementPtr words = m_Root->FindElement("EVILWORDS")) m_Words = words->Body();
}

Text ReferenceFile::CategoryName(const Text& id) const {
    if (const auto known = m_Names.find(id); known != m_Names.end()) return known->second;
    const ElementPtr categories = m_Root->FindElement("CATEGORIES");
    const ElementPtr category = categories ? categories->FindElementAttribute2("ID", id) : nullptr;
    if (!category) throw Error(ErrorNumber::ObjectNotSet);
    return m_Names[id] = category->FindAttributeValue("NAME");
}

void ReferenceFile::Fill(GeoIP& geo) const {
    const ElementPtr countries = m_Root->FindElement("COUNTRIES");
    if (!countries) throw InputError(m_Path + ": there are no COUNTRIES");
    try {
        geo.LoadCountries({countries->begin(), countries->end()});
    } catch (const RuntimeError& error) {
        throw InputError(m_Path + ", COUNTRIES: " + error.Description);
    }
    if (const ElementPtr table = m_Root->FindElement("GEOIP")) geo.LoadIPCountry(table->Body());
}

}  // namespace tb
