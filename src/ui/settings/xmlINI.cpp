#include "ui/settings/xmlINI.h"

#include <set>

#include "base/codepage.h"
#include "base/errors.h"
#include "components/tbXML/Document.h"
#include "components/tbXML/XmlText.h"
#include "platform/AtomicWrite.h"
#include "platform/BadFile.h"

namespace tb {

namespace {

bool IsFileNotFound(const RuntimeError& error) {
    return error.Number == static_cast<std::int32_t>(ErrorNumber::FileNotFound);
}

template <typename Held>
const Held& As(const xmlINI::Global& global) {
    const Held* held = std::get_if<Held>(&global);
    if (held == nullptr) throw Error(ErrorNumber::TypeMismatch);
    return *held;
}

}  // namespace

Text xmlINI::GetXMLString(TextView Section, TextView Element, const Text& Default) const noexcept {
    Text value;
    Trap(
        [&] {
            const auto section = m_SectionMap.find(UpperCase(Section));
            const ElementPtr found = section == m_SectionMap.end() ? nullptr : section->second.Find(Element);
            if (found == nullptr) return;
            for (const ElementPtr& child : *found) value += child->XML();
            if (value.empty()) value = found->Body();
        },
        [](const RuntimeError&) {});
    return value.empty() ? Default : value;
}

bool xmlINI::WriteXMLString(TextView Section, TextView Element, const Text& Value) noexcept {
    ++m_Revision;
    Trap(
        [&] {
            const auto value = std::make_shared<tb::Element>("ELEMENT", Value);
            value->AddAttribute({"NAME", Text(Element)});
            const Text key = UpperCase(Section);
            if (m_SectionMap.count(key) == 0) m_Sections.emplace_back(Section);
            ElementMap& section = m_SectionMap[key];
            section.Remove(Element);
            section.Add(Element, value);
        },
        [](const RuntimeError&) {});
    return false;
}

bool xmlINI::DeleteXMLString(TextView Section, TextView Element) noexcept {
    ++m_Revision;
    Trap(
        [&] {
            const auto section = m_SectionMap.find(UpperCase(Section));
            if (section == m_SectionMap.end() || (Section.empty() && Element.empty())) return;
            if (Element.empty()) {
                section->second.RemoveAll();
            } else {
                section->second.Remove(Element);
            }
        },
        [](const RuntimeError&) {});
    return true;
}

bool xmlINI::LoadINI(const std::filesystem::path& FileName) noexcept {
    ++m_Revision;
    bool result = true;
    const auto failed = [&](const RuntimeError& error) {
        result = false;
        m_KeepBadFile = true;
        Trap(
            [&] {
                const Text prompt = IsFileNotFound(error)
                                        ? "INI File " + PathText(FileName) + " does not exist"
                                        : "Error with INI File " + PathText(FileName) + ", " + error.Description;
                ShowError(prompt, IsFileNotFound(error) ? MessageButtons::Exclamation : MessageButtons::Plain);
            },
            [](const RuntimeError&) {});
    };
    Trap(
        [&] {
            m_INIFileName = FileName;
            m_KeepBadFile = false;
            DropUnfinished(m_Around.Storage, FileName);
            DropUnfinished(m_Around.Storage, BadFile(FileName));
            if (!IsThere(m_Around.Storage, FileName)) WriteWhole(FileName, FirstLine() + "</INI>\r\n");
            Document document;
            document.Load(m_Around.Storage, FileName);
            LoadSections(*document.Root());
        },
        failed);
    return result;
}

void xmlINI::LoadSections(const Element& root) {
    m_Sections.clear();
    m_SectionMap.clear();
    for (const ElementPtr& section : root) LoadSection(*section);
}

void xmlINI::LoadSection(const Element& section) {
    const Text name = UpperCase(section.FindAttributeValue("name"));
    ElementMap values;
    for (const ElementPtr& value : section) values.Add(value->FindAttributeValue("name"), value);
    m_Sections.push_back(name);
    if (!m_SectionMap.try_emplace(name, std::move(values)).second) throw Error(ErrorNumber::DuplicateKey);
}

bool xmlINI::SaveXMLINI() noexcept {
    return TrapOr(
        false,
        [&] {
            if (m_KeepBadFile) KeepBadFile(m_Around.Storage, m_INIFileName);
            m_KeepBadFile = false;
            WriteWhole(m_INIFileName, FileText());
            return true;
        },
        [&](const RuntimeError& error) {
            Trap([&] { ShowError("Error saving XML INI " + error.Description, MessageButtons::Plain); },
                 [](const RuntimeError&) {});
        });
}

void xmlINI::WriteWhole(const std::filesystem::path& path, TextView content) {
    WriteFileAtomically(m_Around.Storage, path, [&](FileWriter& writer) { writer.Write(content); });
}

Text xmlINI::FirstLine() const {
    const Text now = FormatDateTime(m_Around.Time.Now(), m_Around.Separators);
    return "<INI DATE='" + EscapedValue(now) + "'>\r\n";
}

Text xmlINI::FileText() const {
    Text text = FirstLine();
    std::set<Text> written;
    for (const Text& name : m_Sections) {
        const Text key = UpperCase(name);
        const auto section = m_SectionMap.find(key);
        // A name that a defective file left here twice is written once, or the new file would be as defective.
        if (section == m_SectionMap.end() || !written.insert(key).second) continue;
        text += "<SECTION name='" + EscapedValue(name) + "'>\r\n";
        for (const ElementPtr& value : section->second) text += value->XML();
        text += "</SECTION>\r\n";
    }
    return text + "</INI>\r\n";
}

void xmlINI::ShowError(const Text& prompt, std::int32_t buttons) noexcept {
    Trap([&] { m_Around.Messages.ShowMessage(prompt, buttons, m_Around.Title); }, [](const RuntimeError&) {});
}

void xmlINI::SetGlobals(TextView key, ElementPtr object) {
    if (object == nullptr) throw Error(ErrorNumber::ObjectNotSet);
    if (!m_GlobalsMap.emplace(UpperCase(key), std::move(object)).second) throw Error(ErrorNumber::DuplicateKey);
}

void xmlINI::SetGlobals(TextView key, Text value) {
    if (!m_GlobalsMap.emplace(UpperCase(key), std::move(value)).second) throw Error(ErrorNumber::DuplicateKey);
}

void xmlINI::ReplaceGlobals(TextView key, ElementPtr object) {
    if (object == nullptr) throw Error(ErrorNumber::ObjectNotSet);
    m_GlobalsMap.insert_or_assign(UpperCase(key), std::move(object));
}

void xmlINI::ReplaceGlobals(TextView key, Text value) {
    m_GlobalsMap.insert_or_assign(UpperCase(key), std::move(value));
}

const xmlINI::Global& xmlINI::Globals(TextView key) const {
    const auto global = m_GlobalsMap.find(UpperCase(key));
    if (global == m_GlobalsMap.end()) throw Error(ErrorNumber::InvalidCall);
    return global->second;
}

const Text& xmlINI::GlobalsFindString(TextView key) const { return As<Text>(Globals(key)); }

const ElementPtr& xmlINI::GlobalsFindXMLSection(TextView key) const { return As<ElementPtr>(Globals(key)); }

ElementPtr xmlINI::GlobalsFindXMLElement(TextView key, TextView AttributeName, TextView AttributeValue) const {
    return GlobalsFindXMLSection(key)->FindElementAttribute2(AttributeName, AttributeValue);
}

ElementPtr xmlINI::TryGlobalsSection(TextView key) const {
    const auto global = m_GlobalsMap.find(UpperCase(key));
    const ElementPtr* element = global == m_GlobalsMap.end() ? nullptr : std::get_if<ElementPtr>(&global->second);
    return element == nullptr ? nullptr : *element;
}

ElementPtr xmlINI::TryGlobalsElement(TextView key, TextView AttributeName, TextView AttributeValue) const {
    const ElementPtr section = TryGlobalsSection(key);
    return section == nullptr ? nullptr : section->FindElementAttribute2(AttributeName, AttributeValue);
}

}  // namespace tb
