#include "urlcheck/StandaloneVerdictHost.h"

#include "sitedb/BuiltInCategories.h"

namespace tb {

Text StandaloneVerdictHost::GetXMLString(const Text& /*section*/, const Text& /*key*/, const Text& fallback) {
    return fallback;
}

Text StandaloneVerdictHost::ProductName() { return "Trawlbeam"; }

bool StandaloneVerdictHost::IsOverride(const Text& /*url*/) { return false; }

void StandaloneVerdictHost::AllowSite(const Text& /*url*/) {}

UrlScore StandaloneVerdictHost::ScoreURL(const Text& /*url*/, const Text& /*addresses*/) { return {}; }

void StandaloneVerdictHost::ShowNotifyURL(const Text& /*title*/, const Text& /*message*/, const Text& /*url*/,
                                          std::int32_t /*width*/, std::int32_t /*height*/, std::int32_t /*seconds*/,
                                          std::int32_t /*iconFlags*/, const Text& /*callback*/) {}

void StandaloneVerdictHost::ShowMessage(const Text& prompt, std::int32_t buttons) {
    if (m_Dialogs != nullptr) m_Dialogs->ShowMessage(prompt, buttons, ProductName());
}

void StandaloneVerdictHost::DisplayDebugMessage(const Text& /*text*/) {}

Text StandaloneVerdictHost::CategoryName(const Text& id) { return BuiltInCategoryName(id); }

}  // namespace tb
