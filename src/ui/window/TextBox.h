// A box with text that the user, the program or another process writes.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class TextBox : public VisualControl, private TextBoxEvents {
public:
    explicit TextBox(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }
    std::shared_ptr<void> KeepAlive() override { return Control::KeepAlive(); }

    // The text has changed, by whomever. It is also raised when another process sets the very text that stands there.
    Event<> ChangeEvent;

    // Lines of a multi-line box end in CR LF. Setting the text puts the caret at its beginning and raises ChangeEvent,
    // unless the box holds that text already. A window shows a text up to its first NUL.
    Text GetText() const { return m_Text; }
    void SetText(const Text& text);
    // Characters in front of the caret. Beyond the end counts as the end; error 380 for a negative number.
    std::int32_t SelStart() const;
    void SetSelStart(std::int32_t position);
    // Whether the text has lines. Error 382 once the box has a window.
    bool MultiLine() const { return m_MultiLine; }
    void SetMultiLine(bool multiLine);
    // Whether the user may only read.
    bool Locked() const { return m_Locked; }
    void SetLocked(bool locked);

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

protected:
    WindowPeer* Peer() const override { return m_Peer.get(); }

private:
    void TextChanged(const Text& text) override;

    Text m_Text;
    std::int32_t m_SelStart = 0;
    bool m_MultiLine = false;
    bool m_Locked = false;
    std::unique_ptr<TextBoxPeer> m_Peer;
};

}  // namespace tb
