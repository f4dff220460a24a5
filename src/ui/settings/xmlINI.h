// The program's settings: texts by section and key, kept in one file; and beside them the globals, documents and texts
// from data files, which are never saved. Section, key and global names are found without regard to case.
// Thread: the user-interface thread. The page docs/formats/settings-file.md describes the file, SettingsTable.h what is
// in it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <variant>

#include "base/date.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/Files.h"
#include "ui/settings/ElementMap.h"

namespace tb {

class xmlINI {
public:
    using Global = std::variant<Text, ElementPtr>;

    // What stands around the settings; all of it outlives them.
    struct Surroundings {
        Files& Storage;
        Clock& Time;
        Dialogs& Messages;
        // Of the user's locale, for the date in the file.
        DateSeparators Separators;
        // Of the message boxes.
        Text Title;
    };

    explicit xmlINI(Surroundings surroundings) : m_Around(std::move(surroundings)) {}

    // Adds a global; error 457 if there is one of that name, 91 for a null object.
    void SetGlobals(TextView key, ElementPtr object);
    void SetGlobals(TextView key, Text value);
    // The same for those who load data files again and again: an existing global is replaced.
    void ReplaceGlobals(TextView key, ElementPtr object);
    void ReplaceGlobals(TextView key, Text value);
    // Error 5 when there is none.
    const Global& Globals(TextView key) const;
    bool HasGlobals(TextView key) const { return m_GlobalsMap.count(UpperCase(key)) > 0; }

    // The path that LoadINI was given.
    const std::filesystem::path& INIFileName() const { return m_INIFileName; }

    // The value as text; `Default` when it is missing or empty. A value that holds elements reads as their XML.
    Text GetXMLString(TextView Section, TextView Element, const Text& Default) const noexcept;
    // Replaces the value, or adds it, at the end of its section, in memory only. The result says nothing: always False.
    bool WriteXMLString(TextView Section, TextView Element, const Text& Value) noexcept;
    // Drops a value; with an empty `Element` all values of the section, which itself stays. Always True.
    bool DeleteXMLString(TextView Section, TextView Element) noexcept;

    // Reads the file, which is made if it is not there, in place of what is held. On a failure a message box says what
    // is wrong, the result is False, and what is held is whole sections up to the defect, or all that was held before
    // if the file cannot be parsed.
    bool LoadINI(const std::filesystem::path& FileName) noexcept;
    // Writes all sections; the file is the old or the new one at any moment. A file that did not load is first copied
    // to its name and ".bad". On a failure, a read-only file among them, a message box says so, the file stays,
    // False.
    bool SaveXMLINI() noexcept;

    // Kept for its callers' sake, of which there are none: always null.
    static ElementPtr GlobalsFind(const Global&, const Global&, const Global&) noexcept { return nullptr; }
    // Error 5 for a missing global, 13 for one that is an element.
    const Text& GlobalsFindString(TextView key) const;
    // The child of the global's element that carries this attribute with this value, or null. Errors as below.
    ElementPtr GlobalsFindXMLElement(TextView key, TextView AttributeName, TextView AttributeValue) const;
    // Error 5 for a missing global, 13 for one that is a text.
    const ElementPtr& GlobalsFindXMLSection(TextView key) const;

    // The same two for those to whom a missing global is nothing, as on a first start without a network: null for a
    // global that is missing or a text.
    ElementPtr TryGlobalsSection(TextView key) const;
    ElementPtr TryGlobalsElement(TextView key, TextView AttributeName, TextView AttributeValue) const;

    // Grows whenever a value may have changed, so that what is derived from values can be kept until it does.
    std::uint64_t Revision() const { return m_Revision; }

private:
    void LoadSections(const Element& root);
    void LoadSection(const Element& section);
    Text FileText() const;
    Text FirstLine() const;
    void WriteWhole(const std::filesystem::path& path, TextView content);
    void ShowError(const Text& prompt, std::int32_t buttons) noexcept;

    Surroundings m_Around;
    // In the order of writing. After a defective file a name may stand here twice, or without its map.
    std::vector<Text> m_Sections;
    // By name in upper case.
    std::map<Text, ElementMap> m_SectionMap;
    // By key in upper case.
    std::map<Text, Global> m_GlobalsMap;
    std::filesystem::path m_INIFileName;
    // The file is one that did not load, and no copy of it has been made.
    bool m_KeepBadFile = false;
    std::uint64_t m_Revision = 0;
};

}  // namespace tb
