// Images and lines, which are painted into the window that holds them.
#pragma once

#include "ui/window/win32/Win32Canvas.h"

namespace tb {

// The place of one among those of its canvas; hidden at first.
template <typename Base>
class Win32Windowless : public Base, protected Windowless {
public:
    Win32Windowless(const Win32Windowless&) = delete;
    Win32Windowless& operator=(const Win32Windowless&) = delete;
    ~Win32Windowless() override = default;

    void SetVisible(bool visible) override {
        Change([&] { m_Visible = visible; });
    }
    void SetZOrder(bool toBack) override { m_Canvas->Restack(*this, toBack); }

protected:
    Win32Windowless(const Win32WindowSystem& system, std::shared_ptr<Win32Canvas> canvas)
        : m_System(system), m_Canvas(std::move(canvas)) {
        m_Canvas->Add(*this);
    }

    // Where it was and where it is are painted anew.
    template <typename Body>
    void Change(Body&& body) {
        m_Canvas->Touch(Area());
        body();
        m_Canvas->Touch(Area());
    }

    const Win32WindowSystem& m_System;
    std::shared_ptr<Win32Canvas> m_Canvas;
    bool m_Visible = false;
};

class Win32ImagePeer final : public Win32Windowless<ImagePeer> {
public:
    Win32ImagePeer(const Win32WindowSystem& system, std::shared_ptr<Win32Canvas> canvas)
        : Win32Windowless(system, std::move(canvas)) {}
    ~Win32ImagePeer() override { m_Canvas->Remove(*this); }

    void SetBounds(const TwipRect& bounds) override;
    void SetPicture(const PictureRef& picture, bool stretch) override;

private:
    RECT Area() const override;
    void Paint(HDC context) const override;

    PixelRect m_Pixels;
    PictureRef m_Picture;
    // As it is shown, made when it is first painted.
    mutable PictureRef m_Shown;
    bool m_Stretch = false;
};

class Win32LinePeer final : public Win32Windowless<LinePeer> {
public:
    Win32LinePeer(const Win32WindowSystem& system, std::shared_ptr<Win32Canvas> canvas)
        : Win32Windowless(system, std::move(canvas)) {}
    ~Win32LinePeer() override { m_Canvas->Remove(*this); }

    void SetEnds(const TwipPoint& from, const TwipPoint& to) override;
    void SetColor(Color color) override;

private:
    RECT Area() const override;
    void Paint(HDC context) const override;

    PixelPoint m_From;
    PixelPoint m_To;
    Color m_Color;
};

}  // namespace tb
