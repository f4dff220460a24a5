#include <algorithm>

#include "base/errors.h"
#include "base/numbers.h"
#include "ui/skin/Lighten.h"
#include "ui/skin/SkinPictures.h"
#include "ui/skin/tbSkin.h"

namespace tb {

namespace {

// In points.
constexpr double SmallestTitle = 1;
constexpr double LargestTitle = 72;

constexpr std::int32_t UsualFactor = 10;

}  // namespace

void tbSkin::BuildCaption() {
    const ElementPtr builtin = m_Skin.Builtin->FindElement("Caption");
    SetVisible(builtin != nullptr);
    picCaption[0]->SetVisible(builtin != nullptr);
    if (builtin == nullptr) return;
    ReadCaption(builtin, m_Skin.Override == nullptr ? nullptr : m_Skin.Override->FindElement("Caption"));
    DressCaption();
    ShowLook(true);
}

void tbSkin::ReadCaption(const ElementPtr& builtin, const ElementPtr& override) {
    for (const char* const name :
         {"CaptionFontName", "CaptionFontSize", "CaptionTextTop", "CaptionTextLeft", "CaptionTopColor1",
          "CaptionTopColor2", "CaptionTopColor3", "CaptionLineColor1", "CaptionLineColor2", "CaptionActiveForeColor",
          "CaptionInActiveForeColor", "CaptionNonFocusFactor", "CaptionHeight", "CaptionBackColor"}) {
        m_Skin.Cascade.FindSkinAttribute2(override, builtin, name);
    }
    tb::Font font;
    font.Name = GetSkinCollection("CaptionFontName", font.Name);
    font.Bold = true;
    Trap(
        [&] {
            font.Size = std::clamp(ToDouble(GetSkinCollection("CaptionFontSize", {})), SmallestTitle, LargestTitle);
        },
        [](const RuntimeError&) { /* the size stays */ });
    SetFont(font);
    Bar bar;
    bar.Picture = SkinPictures(m_Form.Family()).Read(builtin->Body());
    bar.Box = {GetGlobalPicture("X"), GetGlobalPicture("XMouseDown"), GetGlobalPicture("XMouseOver"),
               GetGlobalPicture("XInactive")};
    bar.HasClose = builtin->FindAttributeValue("Close") == "1";
    m_Bar = std::move(bar);
}

void tbSkin::DressCaption() {
    SetHeight(std::clamp(SkinNumber("CaptionHeight", 0), 0, m_Form.Height()));
    for (PictureBox* const bar : picCaption) {
        bar->SetAutoRedraw(true);
        bar->Move(0, 0, Width(), Height());
        bar->SetBackColor(SkinColor("CaptionBackColor", 0));
        bar->SetForeColor(SkinColor("CaptionActiveForeColor", 0));
        bar->SetFont(Font());
        bar->SetPicture(m_HighContrast ? nullptr : m_Bar->Picture);
    }
    DressInactive();
    PlaceBox();
    PlaceLines();
}

void tbSkin::DressInactive() {
    PictureBox& bar = *picCaption[1];
    const std::int32_t factor = SkinNumber("CaptionNonFocusFactor", UsualFactor);
    if (m_HighContrast) return bar.SetBackColor(SystemColors::InactiveCaption);
    if (m_Bar->Picture == nullptr) {
        return bar.SetBackColor(AdjustColor(m_Form.Family().Resolved(bar.BackColor()), factor));
    }
    // A title that was drawn would become a part of the picture.
    if (tb::Surface* const surface = bar.Surface()) surface->Clear();
    PictureBoxLightOrDark(bar, factor);
}

void tbSkin::PlaceBox() {
    if (m_HighContrast) {
        ucX1.Setup(nullptr, nullptr, nullptr, nullptr);
    } else {
        ucX1.Setup(m_Bar->Box[0], m_Bar->Box[1], m_Bar->Box[2], m_Bar->Box[3]);
    }
    const TwipScale scale = m_Form.Family().Scale();
    const std::int32_t left = scale.ToPixels(Width()) - scale.ToPixels(ucX1.Width()) - 4 * m_BorderSize;
    const std::int32_t top = (scale.ToPixels(Height()) - 2 - scale.ToPixels(ucX1.Height())) / 2;
    ucX1.Move(scale.ToTwips(left), scale.ToTwips(top));
    ucX1.ZOrder();
    ucX1.SetVisible(m_Bar->HasClose);
}

void tbSkin::PlaceLines() {
    const TwipScale scale = m_Form.Family().Scale();
    const auto place = [&](const std::array<Line*, 2>& lines, std::int32_t above, const char* color) {
        const Twips y = Height() - scale.ToTwips(above);
        for (Line* const line : lines) {
            line->SetBorderColor(SkinColor(color, 0));
            line->SetEnds({0, y}, {Width(), y});
            line->SetVisible(true);
        }
    };
    place(lineTop, 2, "CaptionLineColor1");
    place(lineBottom, 1, "CaptionLineColor2");
}

void tbSkin::RefreshCaption() {
    if (!m_Bar) return;
    DressCaption();
    if (m_CaptionState != 0) DrawCaptionText(*picCaption[m_CaptionState == 1 ? 0 : 1]);
    ShowLook(m_CaptionState != -1);
}

void tbSkin::ShowLook(bool active) {
    picCaption[active ? 1 : 0]->SetVisible(false);
    picCaption[active ? 0 : 1]->SetVisible(true);
    ucX1.SetForeColor(SkinColor(active ? "CaptionActiveForeColor" : "CaptionInActiveForeColor", 0));
    ucX1.SetGround(picCaption[active ? 0 : 1]);
    active ? ucX1.Active() : ucX1.InActive();
}

void tbSkin::SetCaption(const Text& caption) {
    m_Caption = caption;
    DrawCaptionText(*picCaption[m_CaptionState == 1 ? 0 : 1]);
    ucX1.Redraw();
}

void tbSkin::DrawCaptionText(PictureBox& picture) {
    const bool active = m_CaptionState == 1;
    const Color color = SkinColor(active ? "CaptionActiveForeColor" : "CaptionInActiveForeColor", 0);
    picture.SetForeColor(color);
    tb::Surface* const surface = picture.Surface();
    if (surface == nullptr) return;
    const TwipScale scale = m_Form.Family().Scale();
    surface->Clear();
    surface->Print({scale.ToPixels(SkinNumber("CaptionTextLeft", 0)), scale.ToPixels(SkinNumber("CaptionTextTop", 0))},
                   m_Caption, Font(), color);
}

void tbSkin::CheckFocus() {
    Timer1.SetEnabled(false);
    const bool active = m_Form.IsForeground();
    if (active != (m_CaptionState == 1)) {
        m_CaptionState = active ? 1 : -1;
        DrawCaptionText(*picCaption[active ? 0 : 1]);
        ShowLook(active);
    }
    Timer1.SetEnabled(true);
}

void tbSkin::PictureBoxLightOrDark(PictureBox& box, std::int32_t factor) {
    tb::Surface* const surface = box.Surface();
    const PictureRef shown = surface == nullptr ? nullptr : surface->Image();
    if (shown == nullptr) return;
    box.SetPicture(AdjustPicture(shown, factor));
    surface->Clear();
}

}  // namespace tb
