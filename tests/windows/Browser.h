// One browser window, which asks the running program: its own thread uses it.
#pragma once

#include "components/tbBHBridge/ChannelClient.h"
#include "platform/win32/ReplyWindow.h"
#include "platform/win32/Win32WindowText.h"

namespace tb {

class Browser {
public:
    Browser() : m_Client(m_Windows) { m_Client.Locate(); }
    // The reply, or "(none)".
    Text Ask(const Text& fields) {
        m_Client.Send(m_Reply.Window(), fields);
        return m_Reply.Take().value_or("(none)");
    }
    ChannelClient& Client() { return m_Client; }

private:
    Win32WindowText m_Windows;
    ChannelClient m_Client;
    ReplyWindow m_Reply;
};

}  // namespace tb
