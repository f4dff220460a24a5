#include "ui/skin/ucX.h"

#include "ui/window/ControlTable.h"
#include "ui/window/Form.h"

namespace tb {

namespace {

constexpr std::int32_t FirstPixels = 18;
// Between the edge and the cross, as a part of the box.
constexpr std::int32_t CrossMargin = 3;

}  // namespace

ucX::ucX(const ControlPlace& place) : UserControl(place) {
    const Twips side = Parent()->Family().Scale().ToTwips(FirstPixels);
    Move(0, 0, side, side);
    MouseMoveEvent.Connect([this](const TwipPoint& at) { Follow(at); });
    MouseDownEvent.Connect([this](MouseButton button, const TwipPoint&) { Press(button); });
    MouseUpEvent.Connect([this](MouseButton button, const TwipPoint& at) { Release(button, at); });
    MouseLeaveEvent.Connect([this] { Leave(); });
    CaptureLostEvent.Connect([this] { Leave(); });
}

const ControlClass& ucX::StaticClass() {
    static const ControlClass table("ucX", &UserControl::StaticClass(), {});
    return table;
}

void ucX::Setup(const PictureRef& normal, const PictureRef& mouseDown, const PictureRef& mouseOver,
                const PictureRef& inactive) {
    m_Pictures = {normal, mouseDown, mouseOver, inactive};
    if (normal != nullptr) {
        const TwipScale scale = Parent()->Family().Scale();
        Move(Left(), {}, scale.ToTwips(normal->Size.Width), scale.ToTwips(normal->Size.Height));
    }
    Show(Look::Normal);
}

void ucX::MakePeer(FormPeer& form) {
    UserControl::MakePeer(form);
    Redraw();
}

void ucX::SetGround(const DrawnControl* ground) {
    m_Ground = ground;
    Redraw();
}

void ucX::Show(Look look) {
    m_Look = look;
    Redraw();
}

void ucX::Redraw() {
    tb::Surface* const surface = Surface();
    if (surface == nullptr) return;
    const PixelSize size = surface->Size();
    const PixelRect whole{0, 0, size.Width, size.Height};
    DrawGround(*surface, whole);
    const PictureRef& picture = m_Pictures.at(static_cast<size_t>(m_Look));
    if (picture == nullptr) return DrawCross(*surface, whole);
    surface->DrawPicture(*picture, {0, 0, picture->Size.Width, picture->Size.Height});
}

void ucX::DrawGround(tb::Surface& surface, const PixelRect& whole) {
    const tb::Surface* const beneath = m_Ground != nullptr ? m_Ground->Surface() : nullptr;
    if (beneath == nullptr) return surface.Fill(whole, BackColor());
    const TwipScale scale = Parent()->Family().Scale();
    const bool within = Container() == m_Ground;
    const Twips left = Left() - (within ? 0 : m_Ground->Left());
    const Twips top = Top() - (within ? 0 : m_Ground->Top());
    surface.CopyFrom(*beneath, {scale.ToPixels(left), scale.ToPixels(top)}, whole);
}

void ucX::DrawCross(tb::Surface& surface, const PixelRect& whole) const {
    const std::int32_t margin = whole.Width / CrossMargin;
    const std::int32_t right = whole.Width - margin;
    const std::int32_t bottom = whole.Height - margin;
    surface.Line({margin, margin}, {right, bottom}, ForeColor());
    surface.Line({margin, bottom - 1}, {right, margin - 1}, ForeColor());
}

bool ucX::Holds(const TwipPoint& at) const { return at.X >= 0 && at.Y >= 0 && at.X < Width() && at.Y < Height(); }

void ucX::Follow(const TwipPoint& at) {
    if (!Holds(at)) return Leave();
    if (m_MouseIsOver) return;
    m_MouseIsOver = true;
    SetCapture(true);
    Show(Look::MouseOver);
}

void ucX::Leave() {
    if (!m_MouseIsOver && !m_IsPressed) return;
    m_MouseIsOver = false;
    m_IsPressed = false;
    SetCapture(false);
    Show(Look::Normal);
}

void ucX::Press(MouseButton button) {
    if (button != MouseButton::Left) return;
    m_IsPressed = true;
    Show(Look::MouseDown);
}

void ucX::Release(MouseButton button, const TwipPoint& at) {
    if (button != MouseButton::Left) return;
    const bool clicked = m_IsPressed && Holds(at);
    // A handler may serve messages or end the window: nothing of this click is left then.
    Leave();
    if (clicked) ClickEvent.Raise();
}

}  // namespace tb
