#include "ui/window/win32/Win32LabelPeer.h"

#include <algorithm>

#include "ui/window/ButtonLook.h"
#include "ui/window/win32/pcMemDC.h"

namespace tb {

namespace {

// Percent of its colour in the text of a label that is disabled.
constexpr std::int32_t DisabledText = 45;

// As much of the window's text as can be seen when no letter is narrower than a pixel; a mail's subject may have
// megabytes, and the system lays out all that it is given.
std::wstring VisibleText(HWND window, const RECT& client, LONG lineHeight) {
    const LONG most = client.right * (client.bottom / std::max<LONG>(lineHeight, 1) + 2);
    const int length = std::min<int>(GetWindowTextLengthW(window), static_cast<int>(most));
    std::wstring text(static_cast<size_t>(length), L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), length + 1)));
    return text;
}

}  // namespace

Win32LabelPeer::Win32LabelPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box,
                               PointerEvents& pointer, bool useMnemonic)
    // Without SS_NOTIFY the mouse would not find it, and it had no tip.
    : Win32ChildPeer(system, form, box,
                     {L"STATIC", SS_LEFT | SS_NOTIFY | WS_GROUP | (useMnemonic ? DWORD{0} : DWORD{SS_NOPREFIX})}),
      Win32Subclass(system),
      m_Pointer(system, pointer),
      m_Layout(LabelLayout | DT_END_ELLIPSIS | (useMnemonic ? 0U : UINT{DT_NOPREFIX})) {
    Attach(Handle());
}

Win32LabelPeer::~Win32LabelPeer() { Detach(Handle()); }

void Win32LabelPeer::SetTransparent(bool transparent) {
    m_IsTransparent = transparent;
    Invalidate();
}

void Win32LabelPeer::SetAlignment(std::int32_t alignment) {
    constexpr UINT sides[] = {DT_LEFT, DT_RIGHT, DT_CENTER};
    m_Layout = (m_Layout & ~static_cast<UINT>(DT_RIGHT | DT_CENTER)) | sides[std::clamp(alignment, 0, 2)];
    Invalidate();
}

bool Win32LabelPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    switch (message) {
    // The class would draw at once, in its own way.
    case WM_SETTEXT:
        result = DefWindowProcW(Handle(), message, wParam, lParam);
        Invalidate();
        return true;
    case WM_ENABLE: Invalidate(); return true;
    case WM_SETFONT:
        if (LOWORD(lParam) == FALSE) break;
        SendMessageW(Handle(), message, wParam, FALSE);
        Invalidate();
        return true;
    case WM_ERASEBKGND: result = TRUE; return true;
    case WM_PRINTCLIENT:
    case WM_PAINT: OnPaint(reinterpret_cast<HDC>(wParam)); return true;
    default: break;
    }
    m_Pointer.OnMessage(Handle(), message, lParam);
    return false;
}

void Win32LabelPeer::OnPaint(HDC context) {
    RECT client{};
    GetClientRect(Handle(), &client);
    if (context != nullptr) {
        Draw(context, client);
        return;
    }
    PAINTSTRUCT paint{};
    BeginPaint(Handle(), &paint);
    Trap([&] { Draw(paint.hdc, paint.rcPaint); }, [this](const RuntimeError& error) { m_System.Failed(error); });
    EndPaint(Handle(), &paint);
}

void Win32LabelPeer::Draw(HDC context, const RECT& area) const {
    const Buffered buffered(context, area);
    if (m_IsTransparent) {
        PaintBeneath(buffered.Context(), area);
    } else {
        FillArea(buffered.Context(), area, m_Colors.Back);
    }
    DrawTextIn(buffered.Context());
}

void Win32LabelPeer::DrawTextIn(HDC context) const {
    const Selected font(context, m_Font->Get());
    TEXTMETRICW metrics{};
    GetTextMetricsW(context, &metrics);
    RECT room{};
    GetClientRect(Handle(), &room);
    const std::wstring text = VisibleText(Handle(), room, metrics.tmHeight);
    // The first line is shown where not all of it has room.
    room.bottom = std::max(room.bottom, metrics.tmHeight);
    Color color = m_Colors.Fore;
    if (!IsWindowEnabled(Handle())) {
        color =
            color.IsSystem() ? SystemColors::GrayText : Mixed(m_System.Resolved(m_Colors.Back), color, DisabledText);
    }
    SetTextColor(context, ToColorRef(color));
    SetBkMode(context, TRANSPARENT);
    DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &room, m_Layout);
}

}  // namespace tb
