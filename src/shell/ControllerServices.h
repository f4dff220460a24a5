// What the controller drives and other rooms bring: the service's updates, the submissions, the windows of the program.
// The answers here are those of a program that has none of them.
#pragma once

#include "base/text.h"
#include "urlcheck/VerdictHost.h"

namespace tb {

class ControllerServices {
public:
    virtual ~ControllerServices() = default;

    // Asks the service for what has changed on the list. Waits for the network, serving messages.
    virtual void UpdateEvilDB(const Text& /*clientKey*/) {}
    // Reports the installed versions; False when the service did not take them.
    virtual bool SendVersions() { return false; }
    // Whether a program update may be looked for now; `reason` says why not, if there is something to say.
    virtual bool CanUpdate(Text& /*reason*/) { return false; }
    virtual void CheckForUpdates() {}

    // Posts the queue files.
    virtual void ProcessSubmissions() {}

    // User's overrides: does one cover the URL, and add one.
    virtual bool IsOverride(const Text& /*url*/) { return false; }
    virtual void AllowSite(const Text& /*url*/) {}
    virtual UrlScore ScoreURL(const Text& /*url*/, const Text& /*addresses*/) { return {}; }

    // Windows. The results tell whether there is such a window.
    virtual bool ShowMainPanel(std::int16_t /*panel*/) { return false; }
    virtual void CloseMainWindow() {}
    // Inverts the drop zone's visibility and tells the new one.
    virtual bool ToggleDropZone(bool& /*visible*/) { return false; }
    // Writes the drop zone's place into the settings and closes it.
    virtual void CloseDropZone() {}
    virtual bool ShowAbout() { return false; }
    virtual void CloseAbout() {}
    virtual bool ShowNotifyURL(const Text& /*title*/, const Text& /*message*/, const Text& /*url*/,
                               std::int32_t /*width*/, std::int32_t /*height*/, std::int32_t /*seconds*/,
                               std::int32_t /*iconFlags*/, const Text& /*callback*/) {
        return false;
    }
    virtual void CloseNotifications() {}
    // How far the start has got, 0 to 100, on the splash window.
    virtual void ShowProgress(std::int16_t /*percent*/) {}
    virtual void CloseSplash() {}

    // The databases go; called once, at the exit.
    virtual void DropDatabases() {}
};

}  // namespace tb
