#include "urlcheck/UrlVerdict.h"

#include <initializer_list>

#include "base/errors.h"
#include "base/numbers.h"
#include "urlcheck/url/NormalizeIP.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {

namespace {

constexpr size_t CommandField = 1;
constexpr size_t UrlField = 2;
constexpr size_t AddressField = 3;

constexpr std::int32_t CriticalIcon = 16;

// The country popup's size in twips, its time and its icon.
constexpr std::int32_t PopupWidth = 3600;
constexpr std::int32_t PopupHeight = 1400;
constexpr std::int32_t PopupSeconds = 25;
constexpr std::int32_t InformationIcon = 64;

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
    Outcome outcome;
    const Text& command = At(args, CommandField);
    if (command == "Check") {
        Check(args, outcome, reply);
    } else if (command == "Allow") {
        m_Host.AllowSite(At(args, UrlField));
    } else {
        UnknownCommand(args);
    }
    const LogLevel level = outcome.IsEvil ? LogLevel::Always : LogLevel::Debug;
    // Nearly every request passes, and its line is composed only if somebody wants it.
    if (!m_Host.Writes(level)) return;
    const Text& result = outcome.IsOverride ? OverrideResult : reply;
    const bool hasBreak = result.find('\r') != Text::npos;
    const Text unbroken = hasBreak ? RemoveAll(result, "\r\n") : Text();
    m_Host.WriteLog(Joined({"Checking: ", outcome.URL, " (", hasBreak ? unbroken : result, ")"}), level);
}

void UrlVerdict::Check(const std::vector<Text>& args, Outcome& outcome, Text& reply) {
    outcome.URL =
        NormalizeIP(UrlDecode(At(args, UrlField)), [this](const Text& line) { m_Host.DisplayDebugMessage(line); });
    if (m_Host.IsOverride(outcome.URL)) {
        outcome.IsOverride = true;
        reply = "OK";
        return;
    }
    // The reply's memory, which the caller may have used before; the reply itself is set at the end.
    outcome.Result.swap(reply);
    const Text* const addresses = args.size() > AddressField ? &args[AddressField] : nullptr;
    AskList(outcome.URL, outcome);
    if (!outcome.IsEvil && addresses != nullptr) AskAddresses(*addresses, outcome);
    static const Text section = "MAIN";
    static const Text key = "ALERTSOUND";
    static const Text fallback = "0";
    if (m_Host.GetXMLString(section, key, fallback) == "1" && outcome.IsEvil) m_Host.PlayAlertSound();
    reply.swap(outcome.Result);
    // The popup is an aid for development: ordinary users' checks end here.
    if (!m_Host.IsDebugMode()) return;
    const bool popup = m_Host.GetXMLString("Main", "CountryPopup", "1") == "1";
    if (popup && addresses != nullptr && !outcome.IsEvil) ShowCountry(outcome.URL, *addresses);
}

void UrlVerdict::AskList(const Text& url, Outcome& outcome) {
    Text category;
    Text validated;
    outcome.IsEvil = m_EvilDB.IsEvil(url, category, validated);
    if (outcome.IsEvil) {
        Join({"Validated: ", validated, "  (Category: ", category, ")"}, outcome.Result);
    } else {
        outcome.Result = "OK";
    }
}

void UrlVerdict::AskAddresses(const Text& addresses, Outcome& outcome) {
    for (const TextView address : SplitViews(addresses, ' ')) {
        if (address.empty()) continue;
        AskList(Joined({"http://", address}), outcome);
        if (!outcome.IsEvil) continue;
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
                         PopupSeconds, InformationIcon, "");
}

void UrlVerdict::UnknownCommand(const std::vector<Text>& args) {
    m_Host.ShowMessage("Unknown Command: " + Join(args, "   "), CriticalIcon);
}

}  // namespace tb
