// What forms and boxes have in common: they are drawn on, and tell of the mouse.
#pragma once

#include "ui/window/win32/Win32Canvas.h"
#include "ui/window/win32/Win32Peer.h"
#include "ui/window/win32/Win32Pointer.h"

namespace tb {

// Base is Win32Peer or what derives from it, of a DrawnPeer.
template <typename Base>
class Win32DrawnPeer : public Base {
public:
    ~Win32DrawnPeer() override { m_Canvas->Attach(nullptr); }

    tb::Surface& Surface() override { return m_Canvas->Surface(); }
    void SetPicture(const PictureRef& picture) override { m_Canvas->SetPicture(picture); }
    void SetCapture(bool capture) override { m_Pointer.SetCapture(this->Handle(), capture); }
    void SetColors(const ControlColors& colors) override {
        Base::SetColors(colors);
        m_Canvas->SetBack(colors.Back);
    }

    // Images and lines that stand on the window hold it too, and may go later.
    const std::shared_ptr<Win32Canvas>& Canvas() const { return m_Canvas; }

protected:
    template <typename... Arguments>
    Win32DrawnPeer(const Win32WindowSystem& system, PointerEvents& pointer, Arguments&&... arguments)
        : Base(system, std::forward<Arguments>(arguments)...),
          m_Canvas(std::make_shared<Win32Canvas>(system)),
          m_Pointer(system, pointer) {}

    std::shared_ptr<Win32Canvas> m_Canvas;
    Win32Pointer m_Pointer;
};

}  // namespace tb
