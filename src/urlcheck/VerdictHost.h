// What the verdict asks of the program around it. The desktop program answers with its settings, windows and databases
// (shell/DatabaseHost.h), a tool with StandaloneVerdictHost.
#pragma once

#include <cstdint>

#include "base/log.h"
#include "base/text.h"

namespace tb {

// The suspicion score of a URL and the country of its addresses; an empty country means that there is nothing to show.
struct UrlScore {
    double Score = 0;
    Text Country;
    bool Flag = false;
};

class VerdictHost : public LogSink {
public:
    // A persisted option; `fallback` when it is absent or empty. Section and key are compared without case.
    virtual Text GetXMLString(const Text& section, const Text& key, const Text& fallback) = 0;
    virtual bool IsDebugMode() = 0;
    virtual Text ProductName() = 0;

    // True when one of the user's overrides covers the URL.
    virtual bool IsOverride(const Text& url) = 0;
    // Adds an override, on disk too. Through the visible list when the main window exists.
    virtual void AllowSite(const Text& url) = 0;

    // Starts the alert sound and returns at once.
    virtual void PlayAlertSound() = 0;
    // Raises what goes wrong, an unknown country for one.
    virtual UrlScore ScoreURL(const Text& url, const Text& addresses) = 0;
    // Opens the corner window, of which there is one, and returns at once. Width and height in twips; icon flags as for
    // `buttons` below; `callback` names what a click calls, empty for nothing.
    virtual void ShowNotifyURL(const Text& title, const Text& message, const Text& url, std::int32_t width,
                               std::int32_t height, std::int32_t seconds, std::int32_t iconFlags,
                               const Text& callback) = 0;
    // Modal message; `buttons` as in platform/Dialogs.h.
    virtual void ShowMessage(const Text& prompt, std::int32_t buttons) = 0;
    // A line for the diagnostics window only.
    virtual void DisplayDebugMessage(const Text& text) = 0;
};

}  // namespace tb
