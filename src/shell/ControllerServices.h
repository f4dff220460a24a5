// What the controller drives and other rooms bring: the service's updates, the submissions, the windows of the program.
// The answers here are those of a program that has none of them.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

class ControllerServices {
public:
    virtual ~ControllerServices() = default;

    // Reports the installed versions; False when the service did not take them. Waits for the network, serving
    // messages.
    virtual bool SendVersions() { return false; }
    // Whether a program update may be looked for now; `reason` says why not, if there is something to say.
    virtual bool CanUpdate(Text& /*reason*/) { return false; }
    virtual void CheckForUpdates() {}

    // Makes and loads the list of submissions; called once, when the other databases are there.
    virtual void SetupSubmissions() {}
    // Posts the queue files.
    virtual void ProcessSubmissions() {}

    // Windows. The results tell whether there is such a window.
    // Adds an override through the list that the user sees.
    virtual bool AllowInWindow(const Text& /*url*/) { return false; }
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

    // The submissions go; called once, at the exit, before the other databases.
    virtual void DropSubmissions() {}
};

}  // namespace tb
