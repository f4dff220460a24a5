// A client of the channel that asks and waits for the answer, as a browser helper does.
#pragma once

#include "components/tbBHBridge/ChannelClient.h"
#include "platform/win32/ReplyWindow.h"
#include "platform/win32/Win32WindowText.h"

namespace tb {

// What a probe raises when nothing answers.
struct NoChannel {
    Text Message;
};

class Probe {
public:
    // Raises NoChannel when no window of that caption has the channel's text box.
    explicit Probe(const Text& caption);

    // Sends the fields from the command on and returns the reply. Raises NoChannel when no reply came, which means that
    // the program has ended on the way.
    Text Ask(const Text& fields);

private:
    Win32WindowText m_Windows;
    Text m_Caption;
    ChannelClient m_Client;
    ReplyWindow m_Reply;
};

}  // namespace tb
