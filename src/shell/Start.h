// The start of the program: one pass through a chain of gates, from nothing to tray, databases and timers.
#pragma once

#include <functional>
#include <memory>

#include "shell/InstallationGates.h"
#include "shell/frmController.h"

namespace tb {

class Start {
public:
    // Makes the controller window when the chain has come that far.
    using MakeController = std::function<std::shared_ptr<frmController>()>;

    // All of it outlives the start.
    Start(ServiceAccess access, ProgramLog& log, SiteTables& tables, ProgramWindows& windows,
          MakeController makeController);

    // True: the program runs and lives on events. False: a gate or an error stopped it, the user has been told what is
    // to be told, and the process is to be ended at once.
    bool Main();
    // After Main has answered False: an unexpected error was the reason, not a gate.
    bool HasFailed() const { return m_HasFailed; }

    const std::shared_ptr<frmController>& Controller() const { return m_Controller; }

private:
    // The parts of the chain; each False stops it, after its line.
    bool ReadSettings();
    bool MakeWindows();
    bool CheckInstallation();
    bool BringUp();
    // What a gate behind the making of the windows says, or the end of the session meanwhile.
    bool Stops(bool gate, const Text& line);
    bool StopWith(const Text& line, LogLevel level);
    void ExitTail(bool fromItsBeginning);
    Text ErrorLine(const RuntimeError& error);

    bool ReadSkinXML();
    Text SkinText();
    void WriteDefaultSettings();
    void MakeFolders();
    bool CheckNameAndPreviousInstance();
    void WakePreviousInstance();
    void StartTrawlbeam();
    Text SetupName() const { return m_App.Product.ProductName + " Setup"; }

    ServiceAccess m_Access;
    App& m_App;
    ProgramLog& m_Log;
    SiteTables& m_Tables;
    ProgramWindows& m_Windows;
    InstallationGates m_Installation;
    MakeController m_MakeController;
    std::shared_ptr<frmController> m_Controller;
    bool m_HasFailed = false;
};

}  // namespace tb
