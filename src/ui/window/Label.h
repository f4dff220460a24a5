// Text that the user only reads.
#pragma once

#include "ui/window/PointerControl.h"

namespace tb {

class Label : public PointerControl {
public:
    explicit Label(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // Broken into lines at blanks, and inside words that are longer than a line. A window shows a text up to its first
    // NUL.
    Text Caption() const { return m_Caption; }
    void SetCaption(const Text& caption);
    // True at first: "&" stands before the letter that moves the focus behind the label, together with Alt. Error 382
    // once the label has a window.
    bool UseMnemonic() const { return m_UseMnemonic; }
    void SetUseMnemonic(bool useMnemonic);
    // The label takes the height of its text; without WordWrap the width too. Both False at first.
    bool AutoSize() const { return m_AutoSize; }
    void SetAutoSize(bool autoSize);
    bool WordWrap() const { return m_WordWrap; }
    void SetWordWrap(bool wordWrap);
    // 0 left, as at first, 1 right, 2 centre; error 380 for others.
    std::int32_t Alignment() const { return m_Alignment; }
    void SetAlignment(std::int32_t alignment);
    // 1, as at first: the ground has BackColor; 0: what lies beneath the label is seen. Error 380 for others.
    std::int32_t BackStyle() const { return m_IsTransparent ? 0 : 1; }
    void SetBackStyle(std::int32_t style);
    void SetFont(const tb::Font& font) override;

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

protected:
    WindowPeer* Peer() const override { return m_Peer.get(); }
    void Placed(const TwipRect& before) override;

private:
    void TakeSize();

    Text m_Caption;
    bool m_UseMnemonic = true;
    bool m_AutoSize = false;
    bool m_WordWrap = false;
    std::int32_t m_Alignment = 0;
    bool m_IsTransparent = false;
    std::unique_ptr<LabelPeer> m_Peer;
};

}  // namespace tb
