#include "sitedb/SiteOverridesPanel.h"

#include <algorithm>

#include "urlcheck/url/UrlAuthority.h"

namespace tb {

namespace {

constexpr size_t SchemeLetters = 4;

// Error 9 for a URL without one.
TextView HostOf(TextView url) {
    const std::optional<TextView> host = UrlAuthority(url);
    if (!host) throw Error(ErrorNumber::Subscript);
    return *host;
}

}  // namespace

Text SiteRootOf(const Text& url) {
    const TextView host = HostOf(url);
    return url.substr(0, url.find('/')) + "//" + Text(host);
}

void SiteOverridesPanel::Setup() noexcept {
    Trap(
        [&] {
            if (m_Overrides.Count() >= 1) {
                for (const Text& url : m_Overrides.URLS()) ListSites.push_back(url);
                Selected = 0;
            }
            MakeActions();
        },
        [this](const RuntimeError& error) {
            m_Log.WriteLog("Setup Site Overrides Error: " + error.Line(), LogLevel::Always);
        });
}

void SiteOverridesPanel::Select(int row) noexcept {
    Selected = row;
    if (HasSelection()) MakeActions();
}

void SiteOverridesPanel::MakeActions() noexcept {
    Trap(
        [&] {
            if (!ListSites.empty()) ListEnabled = true;
            if (!HasSelection()) return DisableActions();
            const Text& url = SelectedUrl();
            const TextView host = HostOf(url);
            Change.Caption = "Allow site override access to the full site URL: " + Text(host);
            Remove = {"Remove site override access to URL: " + url, true};
            // What is a whole site already cannot be widened.
            Change.Enabled = host.data() + host.size() != url.data() + url.size();
        },
        [this](const RuntimeError& error) {
            m_Log.WriteLog("Site Overrides MakeActions Error: " + error.Line(), LogLevel::Always);
        });
}

void SiteOverridesPanel::AddSite(const Text& URL) {
    Text url = URL;
    if (LowerCase(Left(url, SchemeLetters)) != "http") url.insert(0, "http://");
    url = WithoutTrailingSlashes(url);
    if (m_Overrides.IsOverride(url)) {
        m_Dialogs.ShowMessage("URL entry " + url + " is already entered as a site override",
                              MessageButtons::Information);
        return;
    }
    ListSites.push_back(url);
    m_Overrides.AddToDB(url);
    m_Overrides.SaveDB();
    MakeActions();
}

void SiteOverridesPanel::cmdChange() {
    if (!HasSelection()) return;
    const Text old = SelectedUrl();
    const Text site = SiteRootOf(old);
    if (m_Overrides.IsOverride(site)) {
        const Text question = "Changed site override is already entered as: " + site + "\r\n Remove: " + old + "?";
        if (m_Dialogs.ShowMessage(question, MessageButtons::OKCancel) != AnswerOK) return;
        m_Overrides.DelFromDB(old);
        m_Overrides.SaveDB();
        DropSelectedRow();
    } else {
        if (m_Dialogs.ShowMessage("Changing allow site override to: " + site + "?", MessageButtons::OKCancel) !=
            AnswerOK)
            return;
        ListSites[static_cast<size_t>(Selected)] = site;
        m_Overrides.DelFromDB(old);
        m_Overrides.AddToDB(site);
        m_Overrides.SaveDB();
    }
    MakeActions();
}

void SiteOverridesPanel::cmdRemove() {
    if (!HasSelection()) return;
    const Text url = SelectedUrl();
    if (m_Dialogs.ShowSystemMessage("Removing site override: " + url + "?", MessageButtons::OKCancel) != AnswerOK)
        return;
    m_Overrides.DelFromDB(url);
    m_Overrides.SaveDB();
    DropSelectedRow();
    MakeActions();
}

void SiteOverridesPanel::DisableActions() {
    Change = {};
    Remove = {};
}

void SiteOverridesPanel::DropSelectedRow() {
    ListSites.erase(ListSites.begin() + Selected);
    Selected = std::min(Selected, static_cast<int>(ListSites.size()) - 1);
    if (ListSites.empty()) ListEnabled = false;
}

}  // namespace tb
