// A control of a component: a child window of the component's own class, filled by one of the system's controls, whose
// notifications reach the object here. Thread: the one that makes it.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>

#include "platform/win32/Handle.h"

namespace tb {

// In pixels of the parent's client area.
struct ControlBox {
    std::int32_t Left;
    std::int32_t Top;
    std::int32_t Width;
    std::int32_t Height;
};

class ControlWindow {
public:
    ControlWindow(const ControlWindow&) = delete;
    ControlWindow& operator=(const ControlWindow&) = delete;

    // Null once the parent has taken it along.
    HWND Window() const { return m_Window.Get(); }
    void Move(const ControlBox& box);

protected:
    // What a class of windows is made from; both texts are literals. `original` is the system's class, `style` is added
    // to that of a visible child. Error 5 for no parent, 51 when the system refuses.
    struct Kind {
        const wchar_t* ClassName;
        const wchar_t* Original;
        DWORD Style;
        // Which classes of the system's control library are needed (ICC_...).
        DWORD Family;
    };
    ControlWindow(const Kind& kind, HWND parent, const ControlBox& box);
    virtual ~ControlWindow();

    // The system's control; null with the window.
    HWND Original() const { return m_Original; }
    LRESULT Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageW(m_Original, message, wParam, lParam);
    }
    // As Ask, for messages that answer 0 or -1 when they fail: error 51 then.
    void Order(const char* what, LRESULT answer, LRESULT failed) const;

private:
    // A notification of the system's control; the answer goes back to it.
    virtual LRESULT Notified(NMHDR& what) noexcept = 0;
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    const wchar_t* const m_ClassName;
    OwnedWindow m_Window;
    HWND m_Original = nullptr;
};

}  // namespace tb
