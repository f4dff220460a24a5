#include "base/errors.h"
#include "shell/frmController.h"
#include "shell/helpers/Opening.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/SystemInfo.h"

namespace tb {

void frmController::BuildTrayMenu() {
    const auto add = [this](const Text& caption, const Text& key) { m_frmSysTray->AddMenuItem(caption, key); };
    add(ProductName() + " Anti-Scam System", "dblclick");
    add("-", "");
    add("&Main", "menu1");
    add("&Submit Scams", "menu2");
    add("&Preferences", "menu3");
    add(ProductName() + " Ho&mepage", "trawlweb");
    add("-", "");
    if (Program().Debug.IsOn()) {
        add("Hide Debu&g Diagnostics", "diag");
        add("-", "");
    }
    if (IsWindows2000OrLater(Program())) {
        add(DropZoneCaption(GetSetting(Program(), "Desktop", "Show", "1") == "1"), "trawldrop");
        add("-", "");
    }
    add("&Help...", "help");
    add("&About...", "about");
    add("-", "");
    add("&Exit", "exit");
}

Text frmController::DropZoneCaption(bool shown) {
    return Text(shown ? "Hide" : "Show") + " " + ProductName() + " &DropZone";
}

void frmController::MenuClick(TextView key) {
    struct Command {
        const char* Key;
        void (*Run)(frmController&);
    };
    static constexpr Command commands[] = {
        {"dblclick", [](frmController& self) { self.ShowTrawlMain(self.Program().LastPanel); }},
        {"menu1", [](frmController& self) { self.ShowTrawlMain(1); }},
        {"menu2", [](frmController& self) { self.ShowTrawlMain(2); }},
        {"menu3", [](frmController& self) { self.ShowTrawlMain(3); }},
        {"trawlweb", [](frmController& self) { ShellOpen(self.Program(), self.Program().HomeURL); }},
        {"trawldrop", [](frmController& self) { self.ToggleDropZone(); }},
        {"diag", [](frmController& self) { self.ToggleDiagnostics(); }},
        {"help", [](frmController& self) { StartHelp(self.Program(), self.m_Parts.Log); }},
        {"about",
         [](frmController& self) {
             if (!self.m_Parts.Windows.ShowAbout()) self.MissingWindow("frmAbout");
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
            if (!m_Parts.Windows.ShowMainPanel(panel)) MissingWindow("frmTrawlMain");
        },
        [&](const RuntimeError& error) {
            m_Parts.Log.WriteLog("ShowTrawlMain Error: " + error.Description, LogLevel::Always);
        });
}

void frmController::TrayDoubleClicked() {
    if (!Program().ModalDialogOpen()) ShowTrawlMain(Program().LastPanel);
}

void frmController::ToggleDropZone() {
    bool visible = false;
    if (!m_Parts.Windows.ToggleDropZone(visible)) return MissingWindow("frmTrawlDrop");
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
    m_Parts.Log.WriteLog(Text("There is no window ") + window, LogLevel::Debug);
}

}  // namespace tb
