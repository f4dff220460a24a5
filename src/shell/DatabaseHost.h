// What the databases and the verdict ask of the program around them, answered by its settings, tables and windows.
#pragma once

#include "shell/Databases.h"
#include "shell/ProgramWindows.h"
#include "shell/SiteTables.h"
#include "shell/helpers/ProgramLog.h"
#include "shell/helpers/SettingValues.h"
#include "urlcheck/sounds/Sounds.h"

namespace tb {

class DatabaseHost : public VerdictHost, public EvilDBHost {
public:
    // All that is referred to outlives the host.
    struct Parts {
        App& Program;
        ProgramLog& Log;
        SenderFactory MakeSender;
        ProgramWindows& Windows;
        SiteTables& Tables;
        const Databases& Data;
        // Null before they are made: nothing sounds.
        const std::unique_ptr<Sounds>& Device;
    };

    explicit DatabaseHost(Parts parts) : m_Parts(std::move(parts)) {}

    void WriteLog(const Text& message, LogLevel level) noexcept override { m_Parts.Log.WriteLog(message, level); }
    bool Writes(LogLevel level) noexcept override { return m_Parts.Log.Writes(level); }
    Text GetXMLString(const Text& section, const Text& key, const Text& fallback) override {
        return GetSetting(m_Parts.Program, section, key, fallback);
    }
    bool IsDebugMode() override { return m_Parts.Program.Debug.IsOn(); }
    Text ProductName() override { return m_Parts.Program.Product.ProductName; }
    bool IsOverride(const Text& url) override {
        return m_Parts.Data.m_OverDB && m_Parts.Data.m_OverDB->IsOverride(url);
    }
    void AllowSite(const Text& url) override;
    void PlayAlertSound() override;
    UrlScore ScoreURL(const Text& url, const Text& addresses) override;
    void ShowNotifyURL(const Text& title, const Text& message, const Text& url, std::int32_t width, std::int32_t height,
                       std::int32_t seconds, std::int32_t iconFlags, const Text& callback) override;
    void ShowMessage(const Text& prompt, std::int32_t buttons) override;
    void DisplayDebugMessage(const Text& text) override { m_Parts.Program.DebugMessage.Raise(text); }
    Text CategoryName(const Text& id) override;
    ElementPtr UpdateServers() override;
    std::unique_ptr<Sender> MakeUpdateSender() override;

private:
    Parts m_Parts;
};

}  // namespace tb
