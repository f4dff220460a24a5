// The answers of a program that has no settings, no windows and no reference data: every option reads as its default,
// no override covers a site, nothing sounds and nothing pops up, and only the built-in categories are known.
#pragma once

#include "platform/Dialogs.h"
#include "sitedb/EvilDB.h"
#include "urlcheck/VerdictHost.h"

namespace tb {

class StandaloneVerdictHost : public VerdictHost, public EvilDBHost {
public:
    // Lines go to `log`, which must outlive the host. Messages are shown through `dialogs`, or not at all without it.
    explicit StandaloneVerdictHost(LogSink& log, Dialogs* dialogs = nullptr) : m_Log(log), m_Dialogs(dialogs) {}

    void WriteLog(const Text& message, LogLevel level) noexcept override { m_Log.WriteLog(message, level); }
    bool Writes(LogLevel level) noexcept override { return m_Log.Writes(level); }
    Text GetXMLString(const Text& section, const Text& key, const Text& fallback) override;
    bool IsDebugMode() override { return false; }
    Text ProductName() override;
    bool IsOverride(const Text& url) override;
    void AllowSite(const Text& url) override;
    void PlayAlertSound() override {}
    UrlScore ScoreURL(const Text& url, const Text& addresses) override;
    void ShowNotifyURL(const Text& title, const Text& message, const Text& url, std::int32_t width, std::int32_t height,
                       std::int32_t seconds, std::int32_t iconFlags, const Text& callback) override;
    void ShowMessage(const Text& prompt, std::int32_t buttons) override;
    void DisplayDebugMessage(const Text& text) override;
    Text CategoryName(const Text& id) override;

private:
    LogSink& m_Log;
    Dialogs* m_Dialogs;
};

}  // namespace tb
