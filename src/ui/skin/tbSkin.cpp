#include "ui/skin/tbSkin.h"

#include <algorithm>

#include "base/errors.h"
#include "base/numbers.h"
#include "ui/skin/ContrastColors.h"
#include "ui/skin/SkinDresser.h"
#include "ui/skin/SkinPictures.h"
#include "ui/window/ControlTable.h"

namespace tb {

namespace {

constexpr std::int32_t PollMilliseconds = 100;
// A skin makes no window smaller: the user would not find what to close.
constexpr Twips LeastSide = 480;

// What a text converts to, `otherwise` where it does not.
template <typename Result>
Result As(const Text& text, Result otherwise) {
    return TrapOr(
        otherwise, [&] { return Convert<Result>(Value(text)); }, [](const RuntimeError&) {});
}

}  // namespace

tbSkin::tbSkin(const ControlPlace& place, const App& app, LogSink& log)
    : UserControl(place),
      picCaption{&Add<PictureBox>("picCaption", 0), &Add<PictureBox>("picCaption", 1)},
      lineTop{&Add<Line>("lineTop", 0, picCaption[0]), &Add<Line>("lineTop", 1, picCaption[1])},
      lineBottom{&Add<Line>("lineBottom", 0, picCaption[0]), &Add<Line>("lineBottom", 1, picCaption[1])},
      ucX1(Add<ucX>("ucX1")),
      Timer1(Add<Timer>("Timer1")),
      m_Form(*place.Parent),
      m_App(app),
      m_Log(log) {
    Timer1.SetInterval(PollMilliseconds);
    Timer1.TimerEvent.Connect([this] { CheckFocus(); });
    ucX1.ClickEvent.Connect([this] { m_Form.Unload(UnloadMode::User); });
    for (PictureBox* const bar : picCaption) {
        bar->MouseDownEvent.Connect([this](MouseButton button, const TwipPoint&) {
            if (button == MouseButton::Left) m_Form.DragByCaption();
        });
    }
    m_Form.SystemColorsEvent.Connect([this] { SystemColorsChanged(); });
}

const ControlClass& tbSkin::StaticClass() {
    static const ControlClass table("tbSkin", &UserControl::StaticClass(),
                                    {
                                        Property<&tbSkin::Caption, &tbSkin::SetCaption>("Caption"),
                                        Property<&tbSkin::BorderSize, &tbSkin::SetBorderSize>("BorderSize"),
                                    });
    return table;
}

void tbSkin::Skin() {
    if (m_App.SkinRoot == nullptr) return;
    m_Bar.reset();
    m_HighContrast = m_Form.Family().HighContrast();
    m_Skin = ReadWindowSkin(m_App, m_Form.Name());
    if (m_Skin.Builtin == nullptr) return;
    ApplyWindow();
    Place();
    BuildCaption();
    SkinDresser dresser(m_App, m_Form);
    dresser.BuildGraphics(m_Skin.Builtin);
    dresser.BuildGraphics(m_Skin.Override);
    dresser.ApplyComponents(m_Skin.Builtin);
    dresser.ApplyComponents(m_Skin.Override);
    m_Radius = EdgeRadius();
    ShapeWindow();
    if (!m_Bar) return;
    Timer1.SetEnabled(true);
    m_CaptionState = 1;
}

void tbSkin::DressWindow() noexcept {
    Trap([this] { Skin(); },
         [this](const RuntimeError& error) {
             m_Log.WriteLog(m_Form.Name() + " Skin Error: " + error.Line(), LogLevel::Always);
         });
}

void tbSkin::FitWindow() {
    if (m_Skin.Builtin == nullptr) return;
    m_Form.KeepOnScreen();
    Place();
    RefreshCaption();
    ShapeWindow();
}

void tbSkin::ApplyWindow() {
    m_Form.SetBorderStyle(static_cast<std::int32_t>(BorderStyles::None));
    m_Form.SetAppearance(0);
    m_Form.SetAutoRedraw(true);
    SizeWindow();
    ColorWindow();
    if (const PictureRef icon = m_Skin.Icon(m_Form.Family())) m_Form.SetIcon(icon);
}

void tbSkin::SizeWindow() {
    const TwipSize screen = m_Form.Family().ScreenSize();
    const auto side = [&](const char* name, Twips present, Twips most) {
        const Text text = FindPlainAttribute(m_Skin.Builtin, m_Skin.Override, name);
        const std::int32_t wanted = As(text, present);
        return wanted < LeastSide ? present : std::min(wanted, most);
    };
    m_Form.SetHeight(side("Height", m_Form.Height(), screen.Height));
    m_Form.SetWidth(side("Width", m_Form.Width(), screen.Width));
    m_Form.KeepOnScreen();
}

void tbSkin::ColorWindow() {
    if (!m_Skin.Cascade.Has("FormBackColor")) return;
    const Color color = SkinColor("FormBackColor", m_Form.BackColor());
    m_Form.SetBackColor(color);
    m_Form.SetFillColor(color);
}

void tbSkin::Place() {
    const TwipScale scale = m_Form.Family().Scale();
    const Twips width = m_Form.Width() - scale.ToTwips(2 * m_BorderSize + 1);
    Move(scale.ToTwips(m_BorderSize), scale.ToTwips(m_BorderSize + 1), std::max(width, 0));
}

void tbSkin::ShapeWindow() {
    const WindowShape shape = Shape();
    const ShapeEdges& region = shape.Region;
    m_Form.SetRoundRegion({region.Left, region.Top}, {region.Right, region.Bottom}, shape.Radius);
    DrawBorder(shape);
}

WindowShape tbSkin::Shape() const {
    const FrameSizes sizes{{m_Form.Width(), m_Form.Height()}, {m_Form.ScaleWidth(), m_Form.ScaleHeight()}};
    return ShapeOf(sizes, m_Radius, m_Form.Family().Scale());
}

std::int32_t tbSkin::EdgeRadius() {
    const Text text = GetSkinCollection("EdgeRadius", "5");
    return TrapOr(
        0, [&] { return ToInt32(text); },
        [&](const RuntimeError&) {
            m_Log.WriteLog(m_Form.Name() + " Skin: EdgeRadius is no number: " + Quoted(text), LogLevel::Always);
        });
}

void tbSkin::DrawBorder(const WindowShape& shape) {
    tb::Surface* const surface = m_Form.Surface();
    if (surface == nullptr) return;
    surface->Clear();
    for (const BorderStroke& stroke : shape.Border) {
        const Color color = SkinColor(stroke.ColorName, 0);
        if (stroke.Corner < 0) {
            surface->Line(stroke.From, stroke.To, color);
        } else {
            surface->RoundRect(stroke.From, stroke.To, stroke.Corner, color);
        }
    }
}

void tbSkin::SystemColorsChanged() {
    m_HighContrast = m_Form.Family().HighContrast();
    if (m_Skin.Builtin != nullptr) {
        Trap(
            [this] {
                ColorWindow();
                RefreshCaption();
                DrawBorder(Shape());
                SkinDresser dresser(m_App, m_Form);
                dresser.ApplyColors(m_Skin.Builtin);
                dresser.ApplyColors(m_Skin.Override);
            },
            [this](const RuntimeError& error) {
                m_Log.WriteLog(m_Form.Name() + " Skin Colors Error: " + error.Line(), LogLevel::Always);
            });
    }
    ColorsEvent.Raise();
}

Text tbSkin::GetSkinCollection(TextView name, const Text& otherwise) const {
    if (m_Skin.Cascade.Has(name) && m_HighContrast) {
        if (const std::optional<Color> contrast = ContrastColor(name)) return std::to_string(contrast->Bits());
    }
    return m_Skin.Cascade.GetSkinCollection(name, otherwise);
}

Color tbSkin::SkinColor(TextView name, Color otherwise) const {
    return As(GetSkinCollection(name, std::to_string(otherwise.Bits())), otherwise);
}

std::int32_t tbSkin::SkinNumber(TextView name, std::int32_t otherwise) const {
    return As(GetSkinCollection(name, std::to_string(otherwise)), otherwise);
}

PictureRef tbSkin::GetGlobalPicture(TextView name) const {
    return GlobalPicture(m_Form.Family(), m_App.SkinRoot, name);
}

PictureRef tbSkin::PictureFromByteStream(const Text& bytes) const { return m_Form.Family().Decode(bytes); }

void tbSkin::SetBorderSize(std::int32_t pixels) { m_BorderSize = NarrowToInt16(pixels); }

void tbSkin::RoundFrame(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom, Color dark,
                        Color light, std::int32_t radius) {
    tb::Surface* const surface = m_Form.Surface();
    if (surface == nullptr) return;
    surface->RoundRect({left + 1, top + 1}, {right + 1, bottom + 1}, radius, light);
    surface->RoundRect({left, top}, {right, bottom}, radius, dark);
    const double half = radius / 2.0;
    surface->Line({left + 1, RoundToInt32(top + half)}, {left + 1, RoundToInt32(bottom - half)}, light);
    surface->Line({RoundToInt32(left + half), top + 1}, {RoundToInt32(right - half), top + 1}, light);
}

}  // namespace tb
