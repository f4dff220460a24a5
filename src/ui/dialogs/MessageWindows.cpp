#include "ui/dialogs/MessageWindows.h"

#include "ui/dialogs/frmMessage.h"

namespace tb {

std::int32_t MessageWindows::Show(const Message& message) {
    std::optional<std::int32_t> answer;
    Trap(
        [&] {
            const auto box = std::make_shared<frmMessage>(m_Forms, m_App, m_Log);
            answer = box->MsgBox(message);
            box->Unload();
        },
        [this](const RuntimeError& error) { m_Log.WriteLog("Error frmMessage: " + error.Line(), LogLevel::Always); });
    if (answer) return *answer;
    const OpenDialog open(m_App);
    return m_App.System.Dialogs.ShowMessage(message.Prompt, message.Buttons, message.Title);
}

}  // namespace tb
