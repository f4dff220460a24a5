#include "components/tbBHBridge/ChannelClient.h"

namespace tb {

ChannelClient::ChannelClient(WindowText& windows, Text caption) : m_Windows(windows), m_Caption(std::move(caption)) {}

bool ChannelClient::Locate() {
    m_TextBox = 0;
    for (const ChannelClasses& classes : {NormalClasses, DevelopmentClasses}) {
        const WindowHandle window = m_Windows.FindTopLevel(classes.Window, m_Caption);
        if (window != 0) m_TextBox = m_Windows.FindChild(window, classes.TextBox);
        if (m_TextBox != 0) return true;
    }
    return false;
}

bool ChannelClient::Send(WindowHandle replyWindow, const Text& fields) {
    if (m_TextBox == 0) return false;
    m_Windows.SendText(m_TextBox, std::to_string(replyWindow) + FieldSeparator + fields);
    return true;
}

bool ChannelClient::WakeUp() {
    if (m_TextBox == 0) return false;
    m_Windows.SendText(m_TextBox, Text(WakeUpText));
    return true;
}

}  // namespace tb
