// What happens on exit, from the wish to leave to the last window, in the order of its steps.
#pragma once

#include "shell/Databases.h"
#include "shell/ProgramWindows.h"
#include "shell/SiteTables.h"
#include "shell/cController.h"
#include "shell/helpers/ProgramLog.h"
#include "ui/window/Form.h"
#include "ui/window/Timer.h"
#include "urlcheck/tray/frmSysTray.h"

namespace tb {

class ProgramExit {
public:
    // All that is referred to outlives the object.
    struct Parts {
        App& Program;
        ProgramLog& Log;
        ProgramWindows& Windows;
        SiteTables& Tables;
        cController& Controller;
        Databases& Data;
        // The controller's window, with whose end the program ends.
        Form& Window;
        Timer& tmUpdate;
        Timer& tmSub;
        const std::shared_ptr<frmSysTray>& Tray;
    };

    // Begins an exit when the activity controller raises Shutdown or the window is asked to go, by the session's end
    // for one.
    explicit ProgramExit(const Parts& parts);
    ProgramExit(const ProgramExit&) = delete;
    ProgramExit& operator=(const ProgramExit&) = delete;

private:
    void ShutdownRaised();
    void QueryUnload(bool& cancel, UnloadMode mode);
    bool ConfirmsExit();
    void WaitForActivities();
    void Unloaded();
    void DropDatabases();
    void PrepareShutdown();
    const Text& ProductName() const { return m_Parts.Program.Product.ProductName; }

    Parts m_Parts;
};

}  // namespace tb
