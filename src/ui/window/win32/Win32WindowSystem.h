// The windows of the program on Windows.
// Thread: the one that made it, whose message loop serves the windows.
#pragma once

#include <windows.h>

#include <functional>

#include "base/errors.h"
#include "platform/win32/Handle.h"
#include "platform/win32/MessageLoop.h"
#include "ui/window/Peers.h"

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

    std::unique_ptr<FormPeer> MakeForm(FormEvents& events) override;
    TwipSize ScreenSize() const override;
    TwipScale Scale() const override { return m_Scale; }
    void ServeUntil(const std::function<bool()>& done) override { ServeMessagesUntil(done); }

    const ClassNames& Names() const { return m_Names; }
    // Of controls whose font was not chosen.
    HFONT Font() const { return m_Font.Get(); }
    void Failed(const RuntimeError& error) const noexcept;

private:
    ClassNames m_Names;
    std::function<void(const RuntimeError&)> m_Failed;
    TwipScale m_Scale;
    OwnedFont m_Font;
};

}  // namespace tb
