#include "urlcheck/UrlVerdict.h"

#include <initializer_list>

#include "base/errors.h"
#include "base/numbers.h"
#include "platform/Dialogs.h"
#include "urlcheck/url/NormalizeIP.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {

namespace {

constexpr size_t CommandField = 1;
constexpr size_t UrlField = 2;
constexpr size_t AddressField = 3;

// The country popup's size in twips, and its time.
constexpr std::int32_t PopupWidth = 3600;
constexpr std::int32_t PopupHeight = 1400;
constexpr std::int32_t PopupSeconds = 25;

// What the log says of a URL that is overridden; of any other it says the reply.
const Text OverrideResult = "Override";

// In one piece of memory, `target`'s own if it has enough.
void Join(std::initializer_list<TextView> pieces, Text& target) {
    size_t size = 0;
    for (const TextView piece : pieces) size += piece.size();
    target.clear();
    target.reserve(size);
    for (const TextView piece : pieces) target += piece;
}

Text Joined(std::initializer_list<TextView> pieces) {
    Text joined;
    Join(pieces, joined);
    return joined;
}

constexpr size_t LongUrl = 21;
constexpr size_t ShownOfLongUrl = 22;

}  // namespace

void UrlVerdict::CheckEvil(const std::vector<Text>& args, Text& reply) noexcept {
    reply.clear();
    Trap([&] { Dispatch(args, reply); },
         [&](const RuntimeError& error) { m_Host.WriteLog("CheckEvil error: " + error.Line(), LogLevel::Always); });
}

void UrlVerdict::Dispatch(const std::vector<Text>& args, Text& reply) {
    Request request{m_EvilDB};
    if (!request.List) throw Error(ErrorNumber::ObjectNotSet);
    const Text& command = At(args, CommandField);
    if (command == "Check") {
        Check(args, request, reply);
    } else if (command == "Allow") {
        m_Host.AllowSite(At(args, UrlField));
    } else {
        UnknownCommand(args);
    }
    const LogLevel level = request.IsEvil ? LogLevel::Always : LogLevel::Debug;
    // Nearly every request passes, and its line is composed only if somebody wants it.
    if (!m_Host.Writes(level)) return;
    const Text& result = request.IsOverride ? OverrideResult : reply;
    const bool hasBreak = result.find('\r') != Text::npos;
    const Text unbroken = hasBreak ? RemoveAll(result, "\r\n") : Text();
    m_Host.WriteLog(Joined({"Checking: ", request.URL, " (", hasBreak ? unbroken : result, ")"}), level);
}

void UrlVerdict::Check(const std::vector<Text>& args, Request& request, Text& reply) {
    request.URL =
        NormalizeIP(UrlDecode(At(args, UrlField)), [this](const Text& line) { m_Host.DisplayDebugMessage(line); });
    if (m_Host.IsOverride(request.URL)) {
        request.IsOverride = true;
        reply = "OK";
        return;
    }
    // The reply's memory, which the caller may have used before; the reply itself is set at the end.
    request.Result.swap(reply);
    const Text* const addresses = args.size() > AddressField ? &args[AddressField] : nullptr;
    AskList(request.URL, request);
    if (!request.IsEvil && addresses != nullptr) AskAddresses(*addresses, request);
    static const Text section = "MAIN";
    static const Text key = "ALERTSOUND";
    static const Text fallback = "0";
    if (m_Host.GetXMLString(section, key, fallback) == "1" && request.IsEvil) m_Host.PlayAlertSound();
    reply.swap(request.Result);
    // The popup is an aid for development: ordinary users' checks end here.
    if (!m_Host.IsDebugMode()) return;
    const bool popup = m_Host.GetXMLString("Main", "CountryPopup", "1") == "1";
    if (popup && addresses != nullptr && !request.IsEvil) ShowCountry(request.URL, *addresses);
}

void UrlVerdict::AskList(const Text& url, Request& request) {
    Text category;
    Text validated;
    request.IsEvil = request.List->IsEvil(url, category, validated);
    if (request.IsEvil) {
        Join({"Validated: ", validated, "  (Category: ", category, ")"}, request.Result);
    } else {
        request.Result = "OK";
    }
}

void UrlVerdict::AskAddresses(const Text& addresses, Request& request) {
    for (const TextView address : SplitViews(addresses, ' ')) {
        if (address.empty()) continue;
        AskList(Joined({"http://", address}), request);
        if (!request.IsEvil) continue;
        m_Host.WriteLog("CheckEvil found blocked IP address: " + Text(address), LogLevel::Debug);
        return;
    }
}

void UrlVerdict::ShowCountry(const Text& url, const Text& addresses) {
    const UrlScore score = m_Host.ScoreURL(url, addresses);
    if (score.Country.empty()) return;
    const Text shown = url.size() >= LongUrl ? Text(Left(url, ShownOfLongUrl)) + "..." : url;
    m_Host.ShowNotifyURL(m_Host.ProductName() + " Suspicious Sites",
                         shown + " " + score.Country + " " + FormatScore(score.Score), url, PopupWidth, PopupHeight,
                         PopupSeconds, MessageButtons::Information, "");
}

void UrlVerdict::UnknownCommand(const std::vector<Text>& args) {
    m_Host.ShowMessage("Unknown Command: " + Join(args, "   "), MessageButtons::Critical);
}

}  // namespace tb
