#include "ui/main/MainWindows.h"

namespace tb {

namespace {

constexpr std::int16_t SubmissionPanel = 2;

}  // namespace

bool MainWindows::ShowMainPanel(std::int16_t panel) {
    const std::shared_ptr<SubmissionDB> store = m_Controller->Data().oSubmissionDB;
    if (panel != SubmissionPanel || !store) return false;
    if (!m_Panel) {
        m_Panel = std::make_shared<frmSubmissions>(
            m_Parts.Forms, frmSubmissions::Parts{store, m_Parts.Access, m_Controller->Controller(), m_Parts.Targets,
                                                 [this] { m_Controller->PlayClickSound(); }});
    }
    m_Panel->Show();
    return true;
}

void MainWindows::RedisplaySubmissions() {
    if (m_Panel) m_Panel->RefreshDisplay();
}

void MainWindows::CloseMainWindow() {
    m_Dialogs.Close();
    if (m_Panel) m_Panel->Unload();
    m_Panel.reset();
}

}  // namespace tb
