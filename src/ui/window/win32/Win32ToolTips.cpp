#include "ui/window/win32/Win32ToolTips.h"

#include <commctrl.h>

#include "platform/win32/Module.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

// Pixels.
constexpr LPARAM WidestLine = 300;

TTTOOLINFOW Tool(HWND form, HWND child) {
    TTTOOLINFOW tool{};
    // The version of the controls that a program without a manifest has refuses a later size.
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
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
        m_Window = OwnedWindow(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"",
                                               WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                                               CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr, OwnModule(), nullptr));
        SendMessageW(m_Window.Get(), TTM_SETMAXTIPWIDTH, 0, WidestLine);
        m_Form = form;
    }
    TTTOOLINFOW tool = Tool(form, child);
    std::wstring shown = ToSystem(text);
    tool.lpszText = shown.data();
    if (SendMessageW(m_Window.Get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool)) != FALSE) {
        m_Children.insert(child);
    }
}

void Win32ToolTips::Remove(HWND child) {
    if (m_Children.erase(child) == 0) return;
    TTTOOLINFOW tool = Tool(m_Form, child);
    SendMessageW(m_Window.Get(), TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace tb
