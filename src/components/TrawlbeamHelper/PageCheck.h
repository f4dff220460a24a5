// What the browser helper does with a page that the browser is about to open. A page is blocked only when the program
// says so: whatever is missing, fails or takes too long lets it pass.
#pragma once

#include <optional>

#include "base/errors.h"

namespace tb {

// What the program decided for the helper.
struct HelperOptions {
    bool CheckOff = false;
    bool ShowAlert = true;
    bool Messages = false;
    bool WithNumber = true;
    // Of message boxes.
    Text Title = "Trawlbeam";
};

// What the helper asks of the world around it. Each call returns within a bounded time, but for Show. All but Show may
// raise when a component is missing or fails.
class HelperServices {
public:
    virtual ~HelperServices() = default;
    virtual HelperOptions Options() = 0;
    // Whether the program runs.
    virtual bool Reachable() = 0;
    // IPv4 addresses joined by one blank, none when they cannot be told in time.
    virtual Text Addresses(const Text& host) = 0;
    // The program's reply to a request; nothing without an answer in time.
    virtual std::optional<Text> Ask(const Text& fields) = 0;
    // A box that waits for the user, who may navigate meanwhile.
    virtual void Show(const Text& title, const Text& message) noexcept = 0;
};

// Whether a URL is one that is checked: "http:" or "https:" in any case.
bool IsWebUrl(TextView url);

// The host of such a URL, without user information and port; empty when there is none or it is an IPv6 address.
Text HostOfUrl(TextView url);

class PageCheck {
public:
    // `services` must outlive the object.
    explicit PageCheck(HelperServices& services) : m_Services(services) {}

    // True when the program knows the page, or one of its host's addresses, as malicious. Then the user has been told
    // why, unless the options say otherwise or is being told about another page at this moment.
    bool MustBlock(const Text& url) noexcept;

private:
    bool Judge(const Text& url);
    void Show(const Text& title, const Text& message);
    void Report(const RuntimeError& error);

    HelperServices& m_Services;
    HelperOptions m_Options;
    bool m_Showing = false;
    bool m_Reported = false;
};

}  // namespace tb
