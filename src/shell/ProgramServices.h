// What the controller drives, as the program has it: the version report, the program's updates, the
// submissions and their windows.
#pragma once

#include "refdata/UpdateCheck.h"
#include "refdata/VersionReport.h"
#include "shell/cController.h"
#include "shell/frmController.h"
#include "submissions/forms/frmSubCat.h"
#include "submissions/forms/frmSubmissions.h"

namespace tb {

class ProgramServices : public ControllerServices, private Activities {
public:
    // All of it outlives the services.
    struct Parts {
        ServiceAccess Access;
        tb::Forms& Forms;
        ClipboardFormats& Formats;
        DropTargets& Targets;
        // Null before the start has made it.
        std::function<frmController*()> Controller;
    };

    explicit ProgramServices(Parts parts) : m_Parts(std::move(parts)), m_Updates(m_Parts.Access) {}

    bool SendVersions() override { return VersionReport(m_Parts.Access).SendVersions(); }
    bool CanUpdate(Text& reason) override { return m_Updates.CanUpdate(false, reason); }
    void CheckForUpdates() override;
    void SetupSubmissions() override;
    void ProcessSubmissions() override;
    void DropSubmissions() override;
    // The panel of submissions alone has a window as yet.
    bool ShowMainPanel(std::int16_t panel) override;
    void CloseMainWindow() override;

private:
    bool StartActivity(const Text& name, bool logIt) override;
    void EndActivity(const Text& name, bool logIt) override;
    // Error 91 when there is none.
    frmController& Controller() const;

    Parts m_Parts;
    UpdateCheck m_Updates;
    SubCatWindows m_Dialogs{m_Parts.Forms, m_Parts.Access.Program};
    std::shared_ptr<SubmissionDB> oSubmissionDB;
    std::shared_ptr<frmSubmissions> m_Window;
};

}  // namespace tb
