#include "shell/ProgramServices.h"

namespace tb {

namespace {

constexpr std::int16_t SubmissionPanel = 2;

}  // namespace

void ProgramServices::CheckForUpdates() {
    cUpdate updater(m_Parts.Access, [this] {
        frmController* const controller = m_Parts.Controller();
        return controller != nullptr && controller->Controller().NeedToExit();
    });
    updater.LogMessage.Connect([this](const Text& line, LogLevel level) { m_Parts.Access.Log.WriteLog(line, level); });
    m_Updates.CheckForUpdates(updater, false);
}

void ProgramServices::SetupSubmissions() {
    const auto store = std::make_shared<SubmissionDB>(SubmissionDB::Parts{m_Parts.Access, m_Parts.Formats, m_Dialogs});
    oSubmissionDB = store;
    store->LogMessage.Connect([this](const Text& line, LogLevel level) { m_Parts.Access.Log.WriteLog(line, level); });
    store->RedisplaySubmissions.Connect([this] {
        if (m_Window) m_Window->RefreshDisplay();
    });
    store->RunWanted.Connect([this] {
        Controller().DoSubmission();
        Controller().CheckSubmissionRetry();
    });
    // What it cannot load it tells in messages.
    store->Setup();
}

void ProgramServices::ProcessSubmissions() {
    if (const std::shared_ptr<SubmissionDB> store = oSubmissionDB) store->ProcessSubmissions();
}

void ProgramServices::DropSubmissions() { oSubmissionDB.reset(); }

bool ProgramServices::ShowMainPanel(std::int16_t panel) {
    if (panel != SubmissionPanel || !oSubmissionDB) return false;
    if (!m_Window) {
        m_Window = std::make_shared<frmSubmissions>(
            m_Parts.Forms, frmSubmissions::Parts{oSubmissionDB, m_Parts.Access, *this, m_Parts.Targets,
                                                 [this] { Controller().PlayClickSound(); }});
    }
    m_Window->Show();
    return true;
}

void ProgramServices::CloseMainWindow() {
    m_Dialogs.Close();
    if (m_Window) m_Window->Unload();
    m_Window.reset();
}

bool ProgramServices::StartActivity(const Text& name, bool logIt) {
    return Controller().Controller().StartActivity(name, logIt);
}

void ProgramServices::EndActivity(const Text& name, bool logIt) { Controller().Controller().EndActivity(name, logIt); }

frmController& ProgramServices::Controller() const {
    frmController* const controller = m_Parts.Controller();
    if (controller == nullptr) throw Error(ErrorNumber::ObjectNotSet);
    return *controller;
}

}  // namespace tb
