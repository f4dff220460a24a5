#include "ui/skin/SkinCascade.h"

#include <utility>

namespace tb {

namespace {

constexpr std::pair<const char*, const char*> Defaults[] = {{"captiontopcolor1", "1"},
                                                            {"captiontopcolor2", "0"},
                                                            {"captiontopcolor3", "0"},
                                                            {"border1", "0"},
                                                            {"border2", "0"},
                                                            {"edgeradius", "5"},
                                                            {"captionfontname", "Tahoma"},
                                                            {"captionfontsize", "10"},
                                                            {"captiontexttop", "45"},
                                                            {"captiontextleft", "120"},
                                                            {"captionbackcolor", "0"},
                                                            {"captionactiveforecolor", "0"},
                                                            {"captioninactiveforecolor", "0"},
                                                            {"captionnonfocusfactor", "10"},
                                                            {"captionlinecolor1", "0"},
                                                            {"captionlinecolor2", "0"},
                                                            {"captionheight", "0"}};

// A name that occurs anywhere in here does not enter a window's collection.
constexpr TextView NotEntered = "name|height|width|formbackcolor";

}  // namespace

void SkinCascade::EnterDefaults() {
    for (const auto& [name, value] : Defaults) m_SkinCollection.emplace(name, value);
}

Text SkinCascade::FindSkinAttribute(const ElementPtr& element, TextView name) {
    if (element == nullptr) return {};
    const Text key = LowerCase(name);
    Text known = GetSkinCollection(key, {});
    const Text found = element->FindAttributeValue(name);
    if (found.empty() || found == known) return known;
    return m_SkinCollection[key] = found;
}

Text SkinCascade::FindSkinAttribute2(const ElementPtr& first, const ElementPtr& second, TextView name) {
    Text value = FindSkinAttribute(first, name);
    return value.empty() ? FindSkinAttribute(second, name) : value;
}

void SkinCascade::Enter(const ElementPtr& element) {
    if (element == nullptr) return;
    for (std::int32_t index = 1; index <= element->AttributeCount(); ++index) {
        FindSkinAttribute(element, element->Attribute(index).Name());
    }
}

void SkinCascade::EnterWindow(const ElementPtr& builtin, const ElementPtr& override) {
    if (builtin == nullptr) return;
    for (std::int32_t index = 1; index <= builtin->AttributeCount(); ++index) {
        const Text name = LowerCase(builtin->Attribute(index).Name());
        if (NotEntered.find(name) == TextView::npos) FindSkinAttribute2(override, builtin, name);
    }
}

Text SkinCascade::GetSkinCollection(TextView name, const Text& otherwise) const {
    const auto entry = m_SkinCollection.find(LowerCase(name));
    return entry == m_SkinCollection.end() ? otherwise : entry->second;
}

bool SkinCascade::Has(TextView name) const { return m_SkinCollection.count(LowerCase(name)) > 0; }

Text FindPlainAttribute(const ElementPtr& builtin, const ElementPtr& override, TextView name) {
    Text value = override == nullptr ? Text() : override->FindAttributeValue(name);
    return value.empty() && builtin != nullptr ? builtin->FindAttributeValue(name) : value;
}

}  // namespace tb
