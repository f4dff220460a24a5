#include "ui/window/win32/Win32ToolTips.h"

#include <commctrl.h>

namespace tb {

namespace {

// Pixels.
constexpr LPARAM WidestLine = 300;

TTTOOLINFOA Tool(HWND form, HWND child) {
    TTTOOLINFOA tool{};
    // The version of the controls that a program without a manifest has refuses a later size.
    tool.cbSize = TTTOOLINFOA_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = form;
    tool.uId = reinterpret_cast<UINT_PTR>(child);
    return tool;
}

}  // namespace

void Win32ToolTips::Set(HWND form, HWND child, const Text& text) {
    Remove(child);
    if (text.empty()) return;
    if (!m_Window) {
        INITCOMMONCONTROLSEX classes{sizeof classes, ICC_BAR_CLASSES};
        InitCommonControlsEx(&classes);
        m_Window = OwnedWindow(CreateWindowExA(
            WS_EX_TOPMOST, TOOLTIPS_CLASSA, "", WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
            CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr, GetModuleHandleA(nullptr), nullptr));
        SendMessageA(m_Window.Get(), TTM_SETMAXTIPWIDTH, 0, WidestLine);
        m_Form = form;
    }
    TTTOOLINFOA tool = Tool(form, child);
    Text shown = text;
    tool.lpszText = shown.data();
    if (SendMessageA(m_Window.Get(), TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool)) != FALSE) {
        m_Children.insert(child);
    }
}

void Win32ToolTips::Remove(HWND child) {
    if (m_Children.erase(child) == 0) return;
    TTTOOLINFOA tool = Tool(m_Form, child);
    SendMessageA(m_Window.Get(), TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace tb
