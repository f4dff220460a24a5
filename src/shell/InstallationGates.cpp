#include "shell/InstallationGates.h"

#include "base/codepage.h"
#include "base/errors.h"
#include "components/tbBHBridge/ChannelNames.h"
#include "refdata/Components.h"
#include "refdata/PendingUpdates.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/Versions.h"

namespace tb {

namespace {

constexpr const char* EmptyLine = "\r\n\r\n";

}  // namespace

template <typename Gate>
bool InstallationGates::Guarded(const char* name, Gate gate) noexcept {
    return TrapOr(false, gate, [&](const RuntimeError& error) { Log(Text(name) + " Error: " + error.Line()); });
}

void InstallationGates::AddComponents() noexcept {
    Guarded("AddComponents", [&] {
        const Text names[] = {Product() + ".exe", Product() + ".chm", Text(UpdaterName), "MBListEx.ocx",
                              "tbXML.dll",        "tbSender.dll",     "tbDTab6.ocx",     "TrawlbeamHelper.dll",
                              "tbBHOCfg.dll",     "tbBHBridge.dll"};
        for (const Text& name : names) AddComponent(m_App, {}, name, true);
        return false;
    });
}

bool InstallationGates::CheckForMissingComponents() noexcept {
    return Guarded("CheckForMissingComponents", [&] { return ListMissing(); });
}

bool InstallationGates::ListMissing() {
    std::vector<Text> missing;
    if (!m_App.Components) throw Error(ErrorNumber::ObjectNotSet);
    for (const ComponentRecord& record : *m_App.Components) {
        if (record.REQUIRED && record.MISSING) missing.push_back(record.FILENAME);
    }
    if (missing.empty()) return false;
    if (HasPendingUpdates(m_App)) {
        RefuseUntilInstalled(MessageButtons::Exclamation);
        Log("Missing required components and updates pending, exiting...");
        return true;
    }
    Log("Missing required components, set NeedToUpdate: " + Join(missing, ", "));
    m_App.NeedToUpdate = true;
    return false;
}

bool InstallationGates::CheckExpireOrWarnVersion() noexcept {
    return Guarded("CheckExpireOrWarnVersion", [&] { return CompareVersions(); });
}

bool InstallationGates::CompareVersions() {
    const Text current = GetAppVersion(m_App);
    const Text warn = VersionOfDefaults("WARNVER");
    const Text expire = VersionOfDefaults("EXPIREVER");
    if (IsVersionNewerThan(expire, current, false)) {
        Log("IsVersionNewerThan - ExpireVer: " + expire + " " + current);
        if (HasPendingUpdates(m_App)) {
            Log("Expired version and pending updates to install, exiting...");
            return RefuseUntilInstalled(MessageButtons::Critical);
        }
        Log("Expired version, set NeedToUpdate");
        m_App.NeedToUpdate = true;
    } else if (IsVersionNewerThan(warn, current, false)) {
        Log("IsVersionNewerThan - WarnVer: " + warn + " " + current);
        const Text prompt = "This version of " + Product() + " is out of date and should be upgraded.\r\n" +
                            "Please click on 'Yes' to get the latest version.";
        if (ShowMessage(m_App, prompt, MessageButtons::YesNo | MessageButtons::Information) != AnswerYes) return false;
        Log("Warn version, set NeedToUpdate");
        m_App.NeedToUpdate = true;
    }
    return false;
}

Text InstallationGates::VersionOfDefaults(TextView name) const {
    const Text version = GetGlobalBody(m_App, "MAIN", "NAME", name);
    return version.empty() ? "0.0.0" : version;
}

bool InstallationGates::RefuseUntilInstalled(std::int32_t icon) {
    ShowMessage(m_App, Product() + " cannot continue until pending updates are installed", icon);
    return true;
}

bool InstallationGates::CheckName() noexcept {
    return Guarded("CheckName", [&] {
        const Text name = PathText(m_App.System.Processes.Executable().stem());
        if (UpperCase(name) == UpperCase(Product())) return false;
        const Text renamed = "'" + Product() + ".exe' has been renamed to: '" + name + ".exe'";
        Log(Product() + " " + renamed + ", exiting");
        ShowMessage(m_App,
                    renamed + "." + EmptyLine + "Please rename back to: '" + name + ".exe'. " + EmptyLine + name +
                        " is now exiting... ",
                    MessageButtons::Information);
        return true;
    });
}

bool InstallationGates::CheckUpdaterRunning() noexcept {
    return Guarded("CheckUpdaterRunning", [&] {
        if (!IsUpdaterRunning()) return false;
        Log(Product() + " CheckNameAndPreviousInstance - Updater program is running, " + Product() + " is exiting");
        ShowMessage(m_App,
                    Product() + " 'Updater' program is running." + EmptyLine + Product() +
                        " can not start until updates are complete." + EmptyLine + Product() + " is now exiting... ",
                    MessageButtons::Information);
        return true;
    });
}

bool InstallationGates::IsUpdaterRunning() const {
    const Text caption = Product() + " Updater";
    WindowText& windows = m_App.System.WindowText;
    return windows.FindTopLevel(NormalClasses.Window, caption) != 0 ||
           windows.FindTopLevel(DevelopmentClasses.Window, caption) != 0;
}

bool InstallationGates::CheckInstallPendingUpdates() noexcept {
    return Guarded("CheckInstallPendingUpdates", [&] {
        if (IsInstallationBrokenOff(m_App)) {
            // The user has said Yes to it, and a program of parts of two versions is not to be run.
            Log("An installation of updates was broken off, launching updater (CheckInstallPendingUpdates)");
            return LaunchUpdater(m_App, m_Log);
        }
        if (!HasPendingUpdates(m_App)) return false;
        Log("There are updates waiting to install, asking user to install.");
        // A plain message, and not the program's own: it is too early for that one.
        const Text prompt = Product() + " application updates are available to install.\r\n" +
                            "This may require a system reboot." + EmptyLine + "Install updates?";
        if (m_App.System.Dialogs.ShowMessage(prompt, MessageButtons::YesNo | MessageButtons::Question, Product()) !=
            AnswerYes) {
            return false;
        }
        Log("Check install pending updates, launching updater (CheckInstallPendingUpdates)");
        return LaunchUpdater(m_App, m_Log);
    });
}

}  // namespace tb
