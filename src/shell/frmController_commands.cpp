#include "base/errors.h"
#include "shell/frmController.h"
#include "shell/helpers/GeneralHelpers.h"
#include "shell/helpers/Help.h"

namespace tb {

void frmController::MenuClick(TextView key) {
    struct Command {
        const char* Key;
        void (*Run)(frmController&);
    };
    static constexpr Command commands[] = {
        {"dblclick", [](frmController& self) { self.ShowTrawlMain(self.m_Parts.Program.LastPanel); }},
        {"menu1", [](frmController& self) { self.ShowTrawlMain(1); }},
        {"menu2", [](frmController& self) { self.ShowTrawlMain(2); }},
        {"menu3", [](frmController& self) { self.ShowTrawlMain(3); }},
        {"trawlweb", [](frmController& self) { ShellOpen(self.m_Parts.Program, self.m_Parts.Program.HomeURL); }},
        {"trawldrop", [](frmController& self) { self.ToggleDropZone(); }},
        {"diag", [](frmController& self) { self.ToggleDiagnostics(); }},
        {"help", [](frmController& self) { StartHelp(self.m_Parts.Program, self.m_Parts.Log); }},
        {"about",
         [](frmController& self) {
             if (!self.m_Parts.Services.ShowAbout()) self.MissingWindow("frmAbout");
         }},
        {"exit",
         [](frmController& self) {
             self.m_Controller.ConfirmExit(true);
             self.m_Controller.NeedToExit(true);
         }},
    };
    const Text folded = LowerCase(key);
    for (const Command& command : commands) {
        if (folded == command.Key) return command.Run(*this);
    }
}

void frmController::ShowTrawlMain(std::int16_t panel) {
    Trap(
        [&] {
            if (!m_Parts.Services.ShowMainPanel(panel)) MissingWindow("frmTrawlMain");
        },
        [&](const RuntimeError& error) { WriteLog("ShowTrawlMain Error: " + error.Description, LogLevel::Always); });
}

void frmController::TrayDoubleClicked() {
    if (!m_Parts.Program.ModalDialogOpen()) ShowTrawlMain(m_Parts.Program.LastPanel);
}

void frmController::ToggleDropZone() {
    bool visible = false;
    if (!m_Parts.Services.ToggleDropZone(visible)) return MissingWindow("frmTrawlDrop");
    if (m_frmSysTray) m_frmSysTray->ChangeMenuItem(DropZoneCaption(visible), "trawldrop");
}

void frmController::ToggleDiagnostics() {
    SetVisible(!Visible());
    CaptionDiagnostics(Visible());
}

void frmController::CaptionDiagnostics(bool shown) {
    if (m_frmSysTray) m_frmSysTray->ChangeMenuItem(Text(shown ? "Hide" : "Show") + " Debu&g Diagnostics", "diag");
}

void frmController::MissingWindow(const char* window) {
    WriteLog(Text("There is no window ") + window, LogLevel::Debug);
}

}  // namespace tb
