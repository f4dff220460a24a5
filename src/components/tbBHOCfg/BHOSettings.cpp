#include "components/tbBHOCfg/BHOSettings.h"

#include <algorithm>

#include "components/tbBHOCfg/tbBHOCfg.h"

namespace tb {

namespace {

struct SectionRule {
    bool IsList;
    std::vector<const char*> Names;
};

const SectionRule& RuleOf(BHOSection section) {
    static const std::array<SectionRule, BHOSectionCount> rules{{
        {false,
         {BHOOption::CheckOff, BHOOption::ShowAlert, BHOOption::Messages, BHOOption::MessageDetail,
          BHOOption::AutoLaunch}},
        // The texts of a version resource.
        {false,
         {"ProductName", "ProductVersion", "FileDescription", "FileVersion", "CompanyName", "InternalName",
          "LegalCopyright", "LegalTrademarks", "OriginalFilename", "Comments"}},
        {false, {"BackColor", "Caption", "Width", "Height", "Visible", "FormTopInterval"}},
        // "Text" is the body of the skin's element: a picture, a rich text, a string.
        {true, {"Name", "Top", "Left", "Width", "Height", "Text"}},
        {true, {"Name", "Top", "Left", "Width", "Height", "BackColor", "Text"}},
        {true, {"Name", "Text"}},
        {true, {"Type", "Name", "Top", "Left", "Width", "Height", "Caption", "ToolTip"}},
    }};
    const auto index = static_cast<std::size_t>(section);
    if (index >= rules.size()) throw Error(ErrorNumber::InvalidCall);
    return rules[index];
}

// As the table spells it.
const char* KnownName(BHOSection section, TextView name) {
    const Text folded = LowerCase(name);
    for (const char* known : RuleOf(section).Names) {
        if (LowerCase(TextView(known)) == folded) return known;
    }
    throw Error(ErrorNumber::NoSuchMember);
}

}  // namespace

BHOSettings::BHOSettings() {
    for (std::size_t index = 0; index < BHOSectionCount; ++index) {
        if (!RuleOf(static_cast<BHOSection>(index)).IsList) m_Sections[index].resize(1);
    }
    for (const char* off : {BHOOption::CheckOff, BHOOption::Messages, BHOOption::AutoLaunch}) {
        Set(BHOSection::Options, 0, off, "0");
    }
    Set(BHOSection::Options, 0, BHOOption::ShowAlert, "1");
    Set(BHOSection::Options, 0, BHOOption::MessageDetail, "2");
}

std::vector<BHOSettings::Element>& BHOSettings::Of(BHOSection section) {
    return At(m_Sections, static_cast<std::size_t>(section));
}

const std::vector<BHOSettings::Element>& BHOSettings::Of(BHOSection section) const {
    return At(m_Sections, static_cast<std::size_t>(section));
}

std::size_t BHOSettings::Count(BHOSection section) const {
    RuleOf(section);
    return Of(section).size();
}

std::size_t BHOSettings::Add(BHOSection section) {
    if (!RuleOf(section).IsList) throw Error(ErrorNumber::InvalidCall);
    std::vector<Element>& elements = Of(section);
    if (elements.size() >= BHOMostElements) throw Error(ErrorNumber::Overflow);
    elements.emplace_back();
    return elements.size() - 1;
}

const Text& BHOSettings::Get(BHOSection section, std::size_t index, TextView name) const {
    static const Text none;
    const Text known = KnownName(section, name);
    const Element& element = At(Of(section), index);
    const auto found =
        std::find_if(element.begin(), element.end(), [&](const auto& pair) { return pair.first == known; });
    return found == element.end() ? none : found->second;
}

void BHOSettings::Set(BHOSection section, std::size_t index, TextView name, TextView value) {
    const Text known = KnownName(section, name);
    if (value.size() > BHOLongestValue) throw Error(ErrorNumber::Overflow);
    Element& element = At(Of(section), index);
    const auto found =
        std::find_if(element.begin(), element.end(), [&](const auto& pair) { return pair.first == known; });
    if (found != element.end() && value.empty()) {
        element.erase(found);
    } else if (found != element.end()) {
        found->second = value;
    } else if (!value.empty()) {
        element.emplace_back(known, value);
    }
}

}  // namespace tb
