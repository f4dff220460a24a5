#include "components/TrawlbeamHelper/PageCheck.h"

#include <algorithm>

#include "components/tbBHBridge/ChannelNames.h"

namespace tb {

namespace {

constexpr size_t LongestShownUrl = 120;

// Browsers drop tabs and line ends from a URL; the first would end a field of the request.
Text WithoutControls(TextView url) {
    Text clean(url);
    clean.erase(std::remove_if(clean.begin(), clean.end(),
                               [](char character) { return static_cast<unsigned char>(character) < ' '; }),
                clean.end());
    return clean;
}

Text AlertMessage(const Text& url, const Text& reason) {
    const Text shown = url.size() > LongestShownUrl ? Text(Left(url, LongestShownUrl)) + "..." : url;
    return "This page was blocked, because it is known as malicious:\r\n" + shown + "\r\n\r\n" + reason;
}

}  // namespace

bool IsWebUrl(TextView url) {
    const Text folded = LowerCase(Left(url, 6));
    return folded.starts_with("http:") || folded == "https:";
}

// As the browser reads it, which goes there: the databases' UrlAuthority takes a "?" or "\" for a part of the host.
Text HostOfUrl(TextView url) {
    const size_t slashes = url.find("//");
    if (slashes == TextView::npos) return {};
    TextView authority = url.substr(slashes + 2);
    authority = authority.substr(0, authority.find_first_of("/\\?#"));
    const size_t user = authority.rfind('@');
    if (user != TextView::npos) authority.remove_prefix(user + 1);
    if (!authority.empty() && authority.front() == '[') return {};
    return Text(authority.substr(0, authority.find(':')));
}

bool PageCheck::MustBlock(const Text& url) noexcept {
    return TrapOr(
        false, [&] { return Judge(WithoutControls(url)); },
        [&](const RuntimeError& error) { Trap([&] { Report(error); }, [](const RuntimeError&) { /* no memory */ }); });
}

bool PageCheck::Judge(const Text& url) {
    if (!IsWebUrl(url)) return false;
    m_Options = m_Services.Options();
    if (m_Options.CheckOff || !m_Services.Reachable()) return false;
    Text fields = Text("Check") + FieldSeparator + url;
    const Text host = HostOfUrl(url);
    const Text addresses = host.empty() ? Text() : m_Services.Addresses(host);
    if (!addresses.empty()) fields += FieldSeparator + addresses;
    const std::optional<Text> reply = m_Services.Ask(fields);
    // An empty reply: the program could not judge.
    if (!reply || reply->empty() || *reply == "OK") return false;
    if (m_Options.ShowAlert) {
        // Without the memory for it the page is blocked all the same.
        Trap([&] { Show(m_Options.Title, AlertMessage(url, *reply)); }, [](const RuntimeError&) { /* see above */ });
    }
    return true;
}

void PageCheck::Show(const Text& title, const Text& message) {
    if (m_Showing) return;
    m_Showing = true;
    m_Services.Show(title, message);
    m_Showing = false;
}

void PageCheck::Report(const RuntimeError& error) {
    // Once is enough: the next page would fail alike.
    if (!m_Options.Messages || m_Reported) return;
    m_Reported = true;
    Show(m_Options.Title, "Pages are not checked: " + (m_Options.WithNumber ? error.Line() : error.Description));
}

}  // namespace tb
