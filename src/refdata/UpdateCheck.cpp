#include "refdata/UpdateCheck.h"

#include "base/errors.h"
#include "refdata/DailyFiles.h"
#include "refdata/Defaults.h"
#include "refdata/PendingUpdates.h"
#include "refdata/Reference.h"
#include "refdata/ServerLists.h"
#include "shell/helpers/Messages.h"

namespace tb {

bool UpdateCheck::CanUpdate(bool Manual, Text& Message) noexcept {
    return TrapOr(
        false,
        [&] {
            Message.clear();
            // Others tell their reason only to a user who asks.
            const auto refuse = [&](const Text& reason) {
                if (Manual) Message = reason;
            };
            Text last;
            if (m_InProgress) {
                Message = "Update already in process";
            } else if (HasPendingUpdates(m_Access.Program)) {
                refuse("Pending updates are available for installation");
            } else if (!IsDue(last) && !m_Access.Program.NeedToUpdate) {
                refuse("Last checked for updates on " + last + ".  No new updates are available...");
            } else if (ServerLists(m_Access).IsOnline()) {
                return true;
            } else if (Manual) {
                Message = "Not Online";
                ShowMessage(m_Access.Program, "Please connect to the Internet to check for updates.",
                            MessageButtons::Information);
            }
            return false;
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("CanUpdate Error: " + error.Line(), LogLevel::Always);
        });
}

bool UpdateCheck::IsDue(Text& lastChecked) const {
    const DateSeparators& separators = m_Access.Program.Product.Separators;
    // One reading for both: the default must lie a whole day back.
    const Date now = m_Access.Program.System.Clock.Now();
    const Text aDayBefore = FormatDateTime(now.PlusSeconds(-Date::SecondsPerDay), separators);
    const Date last = ParseDate(m_Access.Settings()->GetXMLString("Main", "LastUpdateDate", aDayBefore));
    lastChecked = FormatDateTime(last, separators);
    return now.Seconds() - last.Seconds() >= Date::SecondsPerDay;
}

std::int16_t UpdateCheck::CheckForUpdates(cUpdate& Updater, bool Manual) noexcept {
    const bool needed = m_Access.Program.NeedToUpdate;
    m_InProgress = true;
    const auto result = TrapOr(
        std::int16_t{0},
        [&] {
            m_Access.Log.WriteLog(Text("Checking for updates") + (needed ? " - NeedToUpdate..." : "..."),
                                  LogLevel::Always);
            DailyFiles daily(m_Access);
            if (!Updater.StopUpdate()) daily.GetDailyFiles("ReferenceSVR", Reference::FileName, Reference::FileName);
            if (!Updater.StopUpdate()) daily.GetDailyFiles({}, Defaults::FileName, Defaults::FileName);
            return Updater.DoCheckForUpdates(Manual);
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("CheckForUpdates error: " + error.Line(), LogLevel::Always);
        });
    m_Access.Program.NeedToUpdate = needed;
    m_InProgress = false;
    return result;
}

}  // namespace tb
