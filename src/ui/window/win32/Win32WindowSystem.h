// The windows of the program on Windows.
// Thread: the one that made it, whose message loop serves the windows.
#pragma once

#include <windows.h>

#include <functional>

#include "base/errors.h"
#include "platform/win32/Handle.h"
#include "platform/win32/MessageLoop.h"
#include "ui/window/Peers.h"
#include "ui/window/win32/Win32Fonts.h"
#include "ui/window/win32/Win32Pictures.h"

namespace tb {

class Win32WindowSystem : public WindowSystem {
public:
    // The classes of all forms and of all text boxes. A process uses one set.
    struct ClassNames {
        const char* Form;
        const char* TextBox;
    };

    // `failed` gets what a handler of the model throws: nothing propagates through a window procedure. It must not
    // throw.
    Win32WindowSystem(const ClassNames& names, std::function<void(const RuntimeError&)> failed);

    std::unique_ptr<FormPeer> MakeForm(FormEvents& events, PointerEvents& pointer) override;
    TwipSize ScreenSize() const override;
    std::vector<Screen> Screens() const override;
    TwipPoint Pointer() const override;
    TwipScale Scale() const override { return m_Scale; }
    TwipSize MeasureText(const Text& text, const Font& font, Twips width) const override;
    PictureRef Decode(const Text& bytes) const override { return DecodePicture(bytes, m_Dpi); }
    bool HighContrast() const override;
    Color Resolved(Color color) const override;
    void ServeUntil(const std::function<bool()>& done) override { ServeMessagesUntil(done); }

    const ClassNames& Names() const { return m_Names; }
    // Whoever shows a text in it holds it.
    std::shared_ptr<const OwnedFont> FontOf(const Font& font) const { return m_Fonts.Get(font); }
    PixelPoint ToPixels(const TwipPoint& point) const { return {m_Scale.ToPixels(point.X), m_Scale.ToPixels(point.Y)}; }
    PixelRect ToPixels(const TwipRect& area) const;
    TwipPoint ToTwips(const PixelPoint& point) const { return {m_Scale.ToTwips(point.X), m_Scale.ToTwips(point.Y)}; }
    TwipRect ToTwips(const RECT& area) const;
    void Failed(const RuntimeError& error) const noexcept;

private:
    ClassNames m_Names;
    std::function<void(const RuntimeError&)> m_Failed;
    int m_Dpi;
    TwipScale m_Scale;
    // What is made once is nobody's business.
    mutable Win32Fonts m_Fonts;
};

}  // namespace tb
