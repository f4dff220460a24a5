#include "ui/window/win32/Win32TextBoxPeer.h"

#include <algorithm>

#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/WindowClass.h"

namespace tb {

namespace {

constexpr DWORD MultiLineStyle = ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_VSCROLL;

// Sets a flag for the length of a scope, and gives it back as it was.
class Flagged {
public:
    explicit Flagged(bool& flag) : m_Flag(flag), m_Before(flag) { m_Flag = true; }
    Flagged(const Flagged&) = delete;
    Flagged& operator=(const Flagged&) = delete;
    ~Flagged() { m_Flag = m_Before; }

private:
    bool& m_Flag;
    bool m_Before;
};

}  // namespace

Win32TextBoxPeer::Win32TextBoxPeer(const Win32WindowSystem& system, Win32FormPeer& form, TextBoxEvents& events,
                                   bool multiLine)
    : Win32Peer(system), m_Form(form), m_Events(events), m_FormVisible(form.IsVisible()) {
    m_Edit = RegisterChannelClass(system.Names().TextBox, "EDIT", &Win32TextBoxPeer::Procedure);
    const DWORD style = WS_CHILD | WS_TABSTOP | (multiLine ? MultiLineStyle : DWORD{ES_AUTOHSCROLL});
    m_Window = OwnedWindow(CreateWindowExA(WS_EX_CLIENTEDGE, system.Names().TextBox, "", style, 0, 0, 0, 0,
                                           form.Handle(), nullptr, OwnModule(), this));
    if (!m_Window) throw SystemError("CreateWindowEx", GetLastError());
    SendMessageA(Handle(), EM_LIMITTEXT, 0, 0);
    Win32Peer::SetFont({});
    m_Form.AddChild(Handle(), *this);
}

Win32TextBoxPeer::~Win32TextBoxPeer() { m_Form.RemoveChild(Handle()); }

LRESULT CALLBACK Win32TextBoxPeer::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* const self = WindowObject<Win32TextBoxPeer>(window, message, lParam);
    if (self == nullptr || self->m_Edit == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    const Win32WindowSystem& system = self->m_System;
    LRESULT result = FALSE;
    const auto failed = [&](const RuntimeError& error) { system.Failed(error); };
    switch (message) {
    case WM_SETTEXT:
        Trap(
            [&] {
                const std::shared_ptr<void> alive = self->m_Events.KeepAlive();
                result = self->OnSetText(reinterpret_cast<const char*>(lParam));
            },
            failed);
        return result;
    case WM_GETTEXTLENGTH: return static_cast<LRESULT>(self->m_Content.size());
    case WM_GETTEXT: return self->OnGetText(reinterpret_cast<char*>(lParam), wParam);
    // While the window is being made, the object does not know it yet.
    default: return CallWindowProcA(self->m_Edit, window, message, wParam, lParam);
    }
}

LRESULT Win32TextBoxPeer::CallEdit(UINT message, WPARAM wParam, LPARAM lParam) const {
    return CallWindowProcA(m_Edit, Handle(), message, wParam, lParam);
}

LRESULT Win32TextBoxPeer::OnSetText(const char* text) {
    m_Content = text == nullptr ? "" : text;
    m_SelStart = 0;
    if (m_Shown) {
        const Flagged filling(m_Filling);
        CallEdit(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(m_Content.c_str()));
    }
    // A handler may set another text, or end the box.
    if (!m_Muted) m_Events.TextChanged(Text(m_Content));
    return TRUE;
}

LRESULT Win32TextBoxPeer::OnGetText(char* buffer, size_t size) const {
    if (size == 0 || buffer == nullptr) return 0;
    const size_t count = m_Content.copy(buffer, size - 1);
    buffer[count] = '\0';
    return static_cast<LRESULT>(count);
}

void Win32TextBoxPeer::OnCommand(WORD code) {
    if (code != EN_CHANGE || m_Filling) return;
    Text text(static_cast<size_t>(CallEdit(WM_GETTEXTLENGTH, 0, 0)), '\0');
    // The call writes a NUL behind the text, where the string has one.
    const LRESULT length = CallEdit(WM_GETTEXT, text.size() + 1, reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(length));
    m_Content = text;
    const std::shared_ptr<void> alive = m_Events.KeepAlive();
    m_Events.TextChanged(text);
}

void Win32TextBoxPeer::SetVisible(bool visible) {
    m_Visible = visible;
    ShowText();
    ShowWindow(Handle(), visible ? SW_SHOWNA : SW_HIDE);
}

void Win32TextBoxPeer::OnFormVisible(bool visible) {
    m_FormVisible = visible;
    ShowText();
}

void Win32TextBoxPeer::ShowText() {
    const bool shown = m_Visible && m_FormVisible;
    if (shown == m_Shown) return;
    if (!shown) m_SelStart = SelStart();
    m_Shown = shown;
    const Flagged filling(m_Filling);
    CallEdit(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(shown ? m_Content.c_str() : ""));
    if (shown) SetSelStart(m_SelStart);
}

void Win32TextBoxPeer::SetText(const Text& text) {
    const Flagged muted(m_Muted);
    SetWindowTextA(Handle(), text.c_str());
}

void Win32TextBoxPeer::SetLocked(bool locked) { SendMessageA(Handle(), EM_SETREADONLY, locked ? TRUE : FALSE, 0); }

std::int32_t Win32TextBoxPeer::SelStart() const {
    if (!m_Shown) return m_SelStart;
    DWORD start = 0;
    SendMessageA(Handle(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), 0);
    return static_cast<std::int32_t>(start);
}

void Win32TextBoxPeer::SetSelStart(std::int32_t position) {
    m_SelStart = std::min(position, static_cast<std::int32_t>(m_Content.size()));
    if (!m_Shown) return;
    SendMessageA(Handle(), EM_SETSEL, static_cast<WPARAM>(m_SelStart), m_SelStart);
    SendMessageA(Handle(), EM_SCROLLCARET, 0, 0);
}

}  // namespace tb
