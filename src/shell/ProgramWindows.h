// The windows that stand above the shell: it opens and closes them through this face, and they call its controller.
// The answers here are those of a program that lacks the window.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

class MessageBoxes;
class QualifiersView;
class frmController;

class ProgramWindows {
public:
    virtual ~ProgramWindows() = default;

    // Called once, before anything else, when the controller is being made; it outlives the windows' work.
    virtual void Attach(frmController& /*controller*/) {}

    // --- The start. The program's own message boxes, asked for when there is a skin; null where there are none.
    virtual MessageBoxes* Messages() { return nullptr; }
    // The splash window, with how far the list has been loaded, 0 to 100.
    virtual void ShowSplash() {}
    virtual void ShowProgress(std::int16_t /*percent*/) {}
    virtual void CloseSplash() {}
    // Windows and settings of the browser helper.
    virtual void SetupBrowserHelper() {}
    // Called only where the system has translucent windows.
    virtual void SetupTrawlDrop() {}

    // --- While the program runs. The results tell whether there is such a window.
    virtual bool ShowMainPanel(std::int16_t /*panel*/) { return false; }
    // Inverts the drop zone's visibility and tells the new one.
    virtual bool ToggleDropZone(bool& /*visible*/) { return false; }
    virtual bool ShowAbout() { return false; }
    virtual bool ShowNotifyURL(const Text& /*title*/, const Text& /*message*/, const Text& /*url*/,
                               std::int32_t /*width*/, std::int32_t /*height*/, std::int32_t /*seconds*/,
                               std::int32_t /*iconFlags*/, const Text& /*callback*/) {
        return false;
    }
    // Adds an override through the list that the user sees.
    virtual bool AllowInWindow(const Text& /*url*/) { return false; }
    // The list of submissions has changed.
    virtual void RedisplaySubmissions() {}
    // The dialog that asks what kind of scam a submission is.
    virtual QualifiersView& Qualifiers() = 0;

    // --- The exit.
    virtual void CloseMainWindow() {}
    // Writes the drop zone's place into the settings and closes it.
    virtual void CloseDropZone() {}
    virtual void CloseAbout() {}
    virtual void CloseNotifications() {}
};

}  // namespace tb
