#include "probe/win32/Probe.h"

namespace tb {

Probe::Probe(const Text& caption) : m_Caption(caption), m_Client(m_Windows, caption) {
    if (!m_Client.Locate()) throw NoChannel{"no channel: no window \"" + caption + "\" with its text box"};
}

Text Probe::Ask(const Text& fields) {
    m_Client.Send(m_Reply.Window(), fields);
    std::optional<Text> reply = m_Reply.Take();
    if (!reply) throw NoChannel{"no reply from \"" + m_Caption + "\" to: " + Quoted(fields)};
    return *std::move(reply);
}

}  // namespace tb
