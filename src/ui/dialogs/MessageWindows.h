// The program's messages in its own boxes.
#pragma once

#include "shell/helpers/Messages.h"
#include "ui/window/Forms.h"

namespace tb {

class MessageWindows : public MessageBoxes {
public:
    // All three outlive the object.
    MessageWindows(Forms& forms, App& app, LogSink& log) : m_Forms(forms), m_App(app), m_Log(log) {}

    // A box that cannot be made is one line of level 0, and the system's box tells the message.
    std::int32_t Show(const Message& message) override;

private:
    Forms& m_Forms;
    App& m_App;
    LogSink& m_Log;
};

}  // namespace tb
