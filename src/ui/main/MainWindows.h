// The windows of the program above the shell: the panel of submissions, and the dialogs that ask about one.
#pragma once

#include "shell/frmController.h"
#include "submissions/forms/frmSubCat.h"
#include "submissions/forms/frmSubmissions.h"
#include "ui/dialogs/MessageWindows.h"

namespace tb {

class MainWindows : public ProgramWindows {
public:
    // All of it outlives the windows.
    struct Parts {
        ServiceAccess Access;
        tb::Forms& Forms;
        DropTargets& Targets;
    };

    explicit MainWindows(Parts parts) : m_Parts(std::move(parts)) {}

    void Attach(frmController& controller) override { m_Controller = &controller; }
    MessageBoxes* Messages() override { return &m_Messages; }
    // The panel of submissions has a window of its own, the others have none.
    bool ShowMainPanel(std::int16_t panel) override;
    void RedisplaySubmissions() override;
    QualifiersView& Qualifiers() override { return m_Dialogs; }
    // With the dialogs that are open.
    void CloseMainWindow() override;

private:
    Parts m_Parts;
    frmController* m_Controller = nullptr;
    MessageWindows m_Messages{m_Parts.Forms, m_Parts.Access.Program, m_Parts.Access.Log};
    SubCatWindows m_Dialogs{m_Parts.Forms, m_Parts.Access.Program, m_Parts.Access.Log};
    std::shared_ptr<frmSubmissions> m_Panel;
};

}  // namespace tb
