// A picture that is painted into what holds it, beneath all windows there. It is no window of the system.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class Image : public VisualControl {
public:
    explicit Image(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // Without Stretch the control takes the size of its picture; no picture leaves the size.
    PictureRef GetPicture() const { return m_Picture; }
    void SetPicture(const PictureRef& picture);
    bool Stretch() const { return m_Stretch; }
    void SetStretch(bool stretch);
    // 0 none; error 380 for others but 1, which is only stored.
    std::int32_t BorderStyle() const { return m_BorderStyle; }
    void SetBorderStyle(std::int32_t style);

    void SetVisible(bool visible) override;
    void ZOrder(std::optional<std::int32_t> position = {}) override;
    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

protected:
    WindowPeer* Peer() const override { return nullptr; }
    void Placed(const TwipRect& before) override;

private:
    void TakeSize();
    void Show();

    PictureRef m_Picture;
    bool m_Stretch = false;
    std::int32_t m_BorderStyle = 0;
    std::unique_ptr<ImagePeer> m_Peer;
};

}  // namespace tb
