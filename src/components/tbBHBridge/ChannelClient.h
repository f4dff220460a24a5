// The client's end of the browser channel, for browser helpers, probes and a second instance of the program.
#pragma once

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/WindowText.h"

namespace tb {

class ChannelClient {
public:
    // `windows` must outlive the client. `caption` names the window to look for; only measurements ask for another one
    // than the program's own.
    explicit ChannelClient(WindowText& windows, Text caption = ChannelCaption);

    // Looks for the text box anew, the normal classes first. False when the program is not running or not ready.
    bool Locate();

    // Sets a request line into the text box; returns when it has been handled. The answer has by then been set as the
    // text of `replyWindow`, a window of the calling thread. `fields` is the command and what follows it, joined by
    // tabs. False, with nothing sent, when there is no channel.
    bool Send(WindowHandle replyWindow, const Text& fields);

    // Asks the running program to show its main window. No reply follows. False when there is no channel.
    bool WakeUp();

private:
    WindowText& m_Windows;
    Text m_Caption;
    WindowHandle m_TextBox = 0;
};

}  // namespace tb
