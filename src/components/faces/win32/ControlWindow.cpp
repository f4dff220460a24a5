#include "components/faces/win32/ControlWindow.h"

#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/WindowClass.h"

namespace tb {

namespace {

HWND MakeChild(const wchar_t* className, DWORD style, HWND parent, const ControlBox& box, void* object) {
    const HWND window = CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style, box.Left, box.Top, box.Width,
                                        box.Height, parent, nullptr, OwnModule(), object);
    if (window == nullptr) throw SystemError("CreateWindowEx", GetLastError());
    return window;
}

}  // namespace

ControlWindow::ControlWindow(const Kind& kind, HWND parent, const ControlBox& box) : m_ClassName(kind.ClassName) {
    if (!IsWindow(parent)) throw Error(ErrorNumber::InvalidCall);
    const INITCOMMONCONTROLSEX families{sizeof families, kind.Family};
    if (!InitCommonControlsEx(&families)) throw SystemError("InitCommonControlsEx", GetLastError());
    RegisterWindowClass(m_ClassName, &ControlWindow::Procedure);
    m_Window = OwnedWindow(MakeChild(m_ClassName, WS_CLIPCHILDREN, parent, box, this));
    m_Original = MakeChild(kind.Original, kind.Style, Window(), {0, 0, box.Width, box.Height}, nullptr);
    Ask(WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)));
}

ControlWindow::~ControlWindow() {
    // The derived part, which would be told, has gone.
    if (m_Window) SetWindowLongPtrW(Window(), GWLP_USERDATA, 0);
    m_Window.Close();
    // The last one takes the class along; while there are others the system refuses.
    UnregisterClassW(m_ClassName, OwnModule());
}

void ControlWindow::Move(const ControlBox& box) {
    Order("MoveWindow", MoveWindow(Window(), box.Left, box.Top, box.Width, box.Height, TRUE), FALSE);
}

void ControlWindow::Order(const char* what, LRESULT answer, LRESULT failed) const {
    if (answer == failed) throw SystemError(what, GetLastError());
}

LRESULT CALLBACK ControlWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* const self = WindowObject<ControlWindow>(window, message, lParam);
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
    case WM_NOTIFY: {
        auto& what = *reinterpret_cast<NMHDR*>(lParam);
        if (self->m_Original != nullptr && what.hwndFrom == self->m_Original) return self->Notified(what);
        break;
    }
    case WM_SIZE: MoveWindow(self->m_Original, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE); return 0;
    case WM_SETFOCUS: SetFocus(self->m_Original); return 0;
    case WM_NCDESTROY:
        self->m_Original = nullptr;
        static_cast<void>(self->m_Window.Release());
        break;
    default: break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace tb
