// The gates of the start that other rooms bring. The answers here let the start pass.
#pragma once

namespace tb {

class StartGates {
public:
    virtual ~StartGates() = default;

    // True stops the start.
    virtual bool CheckLoadDefaults() { return false; }
    virtual bool CheckInstallPendingUpdates() { return false; }
    // The program file's name, and the updater, when no other instance runs.
    virtual bool CheckName() { return false; }
    virtual bool CheckUpdaterRunning() { return false; }
    virtual bool CheckForMissingComponents() { return false; }
    virtual bool CheckExpireOrWarnVersion() { return false; }
    virtual bool CheckLoadReferenceData() { return false; }
    // Enters the components into App::Components.
    virtual void AddComponents() {}

    // Windows and settings of the browser helper, the splash window and the drop zone.
    virtual void ShowSplash() {}
    virtual void CloseSplash() {}
    virtual void SetupBrowserHelper() {}
    // Called only where the system has translucent windows.
    virtual void SetupTrawlDrop() {}
};

}  // namespace tb
