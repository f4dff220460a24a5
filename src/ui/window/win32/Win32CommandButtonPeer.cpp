#include "ui/window/win32/Win32CommandButtonPeer.h"

#include <algorithm>

#include "ui/window/win32/pcMemDC.h"

namespace tb {

namespace {

// Pixels.
constexpr int Corner = 4;
constexpr int FocusMargin = 2;
constexpr int CaptionMargin = 3;

}  // namespace

Win32CommandButtonPeer::Win32CommandButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box,
                                               ButtonEvents& events)
    : Win32ChildPeer(system, form, box, {L"BUTTON", BS_OWNERDRAW | WS_TABSTOP | WS_GROUP}),
      Win32Subclass(system),
      m_Events(events) {
    Attach(Handle());
}

Win32CommandButtonPeer::~Win32CommandButtonPeer() { Detach(Handle()); }

void Win32CommandButtonPeer::SetDefault(bool isDefault) {
    if (isDefault) {
        m_Form.SetDefaultButton(Handle());
    } else if (m_Form.DefaultButton() == Handle()) {
        m_Form.SetDefaultButton(nullptr);
    }
}

void Win32CommandButtonPeer::SetCancel(bool isCancel) {
    if (isCancel) {
        m_Form.SetCancelButton(Handle());
    } else if (m_Form.CancelButton() == Handle()) {
        m_Form.SetCancelButton(nullptr);
    }
}

void Win32CommandButtonPeer::OnCommand(WORD code) {
    if (code != BN_CLICKED) return;
    const std::shared_ptr<void> alive = m_Events.KeepAlive();
    m_Events.Clicked();
}

void Win32CommandButtonPeer::SetHot(bool hot) {
    if (hot == m_IsHot) return;
    m_IsHot = hot;
    InvalidateRect(Handle(), nullptr, FALSE);
}

bool Win32CommandButtonPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    switch (message) {
    // Which one is the default, and with it this window's style, is not the system's business.
    case BM_SETSTYLE: return true;
    case WM_ERASEBKGND: result = TRUE; return true;
    // A button that its owner draws tells of a double click, and not of the second press.
    case WM_LBUTTONDBLCLK: result = SendMessageW(Handle(), WM_LBUTTONDOWN, wParam, lParam); return true;
    case WM_MOUSEMOVE: {
        TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, Handle(), 0};
        TrackMouseEvent(&track);
        SetHot(true);
        return false;
    }
    case WM_MOUSELEAVE: SetHot(false); return false;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: m_Form.ShowDefaultButton(); return false;
    default: return false;
    }
}

ButtonState Win32CommandButtonPeer::State(UINT itemState) const {
    ButtonState state;
    state.Enabled = (itemState & ODS_DISABLED) == 0;
    state.Hot = m_IsHot;
    state.Pressed = (itemState & ODS_SELECTED) != 0;
    state.Default = m_Form.EnterButton() == Handle();
    state.Focused = (itemState & ODS_FOCUS) != 0;
    return state;
}

void Win32CommandButtonPeer::OnDraw(const DRAWITEMSTRUCT& item) {
    RECT face{};
    RECT seen{};
    GetClientRect(Handle(), &face);
    GetClipBox(item.hDC, &seen);
    if (!IntersectRect(&seen, &seen, &face)) return;
    const Buffered buffered(item.hDC, seen);
    const HDC context = buffered.Context();
    const ButtonState state = State(item.itemState);
    const ButtonLook look = LookOfButton({m_System.Resolved(m_Colors.Back), m_System.Resolved(m_Colors.Fore)}, state);
    PaintBeneath(context, seen);
    {
        const Selected inside(context, GetStockObject(DC_BRUSH));
        const Selected outline(context, GetStockObject(DC_PEN));
        SetDCBrushColor(context, ToColorRef(look.Face));
        SetDCPenColor(context, ToColorRef(look.Border));
        RoundRect(context, 0, 0, static_cast<int>(face.right), static_cast<int>(face.bottom), Corner, Corner);
    }
    RECT inner = face;
    InflateRect(&inner, -FocusMargin, -FocusMargin);
    if (state.Focused && m_Form.KeyboardInUse()) DrawRoundRect(context, inner, Corner / 2, look.Border);
    DrawCaption(context, face, look.Text);
}

void Win32CommandButtonPeer::DrawCaption(HDC context, const RECT& face, Color color) const {
    const Selected font(context, m_Font->Get());
    std::wstring caption(static_cast<size_t>(GetWindowTextLengthW(Handle())), L'\0');
    caption.resize(static_cast<size_t>(GetWindowTextW(Handle(), caption.data(), static_cast<int>(caption.size()) + 1)));
    const auto length = static_cast<int>(caption.size());
    RECT room = face;
    InflateRect(&room, -CaptionMargin, -CaptionMargin);
    RECT text = room;
    DrawTextW(context, caption.c_str(), length, &text, DT_WORDBREAK | DT_CENTER | DT_CALCRECT);
    room.top += std::max<LONG>((room.bottom - room.top - (text.bottom - text.top)) / 2, 0);
    SetTextColor(context, ToColorRef(color));
    SetBkMode(context, TRANSPARENT);
    DrawTextW(context, caption.c_str(), length, &room, DT_WORDBREAK | DT_CENTER | DT_EDITCONTROL | DT_END_ELLIPSIS);
}

}  // namespace tb
