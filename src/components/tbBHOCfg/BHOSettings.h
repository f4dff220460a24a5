// The configuration of the browser helper: what the program decides for it and what the alert looks like. All of it are
// elements of named texts, in seven sections, as they lie in the file. Format: docs/formats/tb-bin.md.
#pragma once

#include <array>
#include <filesystem>
#include <utility>
#include <vector>

#include "components/tbBHOCfg/tbBHOCfgFace.h"
#include "platform/Files.h"

namespace tb {

// Value semantics; nothing is shared. Names are compared without case and stand in a fixed table per section.
class BHOSettings {
public:
    // One element each in Options, Product and Alert, no elements in the lists. A fresh one lets the helper check and
    // show alerts, without error messages and without auto-launch.
    BHOSettings();

    std::size_t Count(BHOSection section) const;
    // The index of the new element. Error 5 for a section of one element; error 6 for more than BHOMostElements.
    std::size_t Add(BHOSection section);
    // The text of that name, empty when none was set. Error 9 outside the section, 438 for a name it does not have.
    const Text& Get(BHOSection section, std::size_t index, TextView name) const;
    // An empty value counts as not set. Errors as Get; 6 for a value longer than BHOLongestValue.
    void Set(BHOSection section, std::size_t index, TextView name, TextView value);

    // Replaces the file in one step. Raises what WriteFileAtomically raises.
    void Save(Files& files, const std::filesystem::path& path) const;
    // Takes everything from the file. Error 321 for one that is damaged or of another version, with a text that says
    // what is wrong, and what reading raises; this object is then unchanged.
    void Load(Files& files, const std::filesystem::path& path);

    bool operator==(const BHOSettings& other) const = default;

private:
    using Element = std::vector<std::pair<Text, Text>>;

    std::vector<Element>& Of(BHOSection section);
    const std::vector<Element>& Of(BHOSection section) const;
    Text ToBytes() const;
    static BHOSettings FromBytes(TextView bytes);

    std::array<std::vector<Element>, BHOSectionCount> m_Sections;
};

}  // namespace tb
