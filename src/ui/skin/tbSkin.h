// Dresses the window that it stands on after the skin document, and is its caption bar: title, close box, the look that
// goes with the focus, dragging.
// A window adds one as "tbSkin1" and calls DressWindow in its load step. Pixels where it says so, else twips.
#pragma once

#include "base/log.h"
#include "ui/skin/WindowShape.h"
#include "ui/skin/WindowSkin.h"
#include "ui/skin/ucX.h"
#include "ui/window/Form.h"
#include "ui/window/Line.h"
#include "ui/window/PictureBox.h"
#include "ui/window/Timer.h"

namespace tb {

class tbSkin : public UserControl {
public:
    // `app` and `log` outlive it.
    tbSkin(const ControlPlace& place, const App& app, LogSink& log);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // Dresses the window. Without a skin, or without an element for the window in the program's own, nothing happens. A
    // size and a colour that do not convert are passed over, as is a size below 480 twips; the window is no larger than
    // its screen afterwards, and on it. Raises what SkinDresser raises: what comes behind it (components, outline,
    // the look that follows the focus) is left out then.
    void Skin();
    // The same for a load step: what is raised becomes a line of level 0.
    void DressWindow() noexcept;
    // For a window whose size is settled only after Skin, once it is: the bar, its lines and box, the outline and the
    // border are made to fit. What the window itself drew on its ground goes.
    void FitWindow();

    // What the cascade has for the window, `otherwise` where it has nothing, as it has for a window without a skin. In
    // high contrast a colour is one of the system's.
    Text GetSkinCollection(TextView name, const Text& otherwise) const;
    // The same as a colour and as a number; also `otherwise` for a text that does not convert.
    Color SkinColor(TextView name, Color otherwise) const;
    std::int32_t SkinNumber(TextView name, std::int32_t otherwise) const;
    // The user has chosen other colours, or high contrast, for the system. The skin has followed; a window reads the
    // colours that it gave to its controls once more.
    Event<> ColorsEvent;

    // See SkinPictures.h; decoded at each call.
    PictureRef GetGlobalPicture(TextView name) const;
    PictureRef PictureFromByteStream(const Text& bytes) const;

    // How far it is inset in the window, in pixels; 2 at first. Counts from the next Skin or FitWindow on. Error 6
    // outside 16 bits.
    std::int32_t BorderSize() const { return m_BorderSize; }
    void SetBorderSize(std::int32_t pixels);
    // The title. Set before Skin it is drawn when the look changes for the first time, so windows set it afterwards.
    Text Caption() const { return m_Caption; }
    void SetCaption(const Text& caption);
    // 1 while the window has the focus look, -1 while it does not, 0 before Skin and without a caption bar.
    std::int16_t CaptionState() const { return m_CaptionState; }

    // Makes all that the box shows lighter, or darker with a negative factor, by that many percent, and makes it the
    // box's picture. Nothing without a window.
    void PictureBoxLightOrDark(PictureBox& box, std::int32_t factor);
    // A raised frame on the ground of the window, in pixels. Nothing without a window.
    void RoundFrame(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom, Color dark,
                    Color light, std::int32_t radius);

    // The bar in the active look and in the inactive one.
    const std::array<PictureBox*, 2> picCaption;
    // On the one and on the other.
    const std::array<Line*, 2> lineTop;
    const std::array<Line*, 2> lineBottom;
    ucX& ucX1;
    // The focus poll.
    Timer& Timer1;

private:
    // What the element "Caption" of a window says, beside the cascade.
    struct Bar {
        PictureRef Picture;
        // Normal, pressed, with the mouse on it, inactive.
        std::array<PictureRef, 4> Box;
        bool HasClose = false;
    };

    void ApplyWindow();
    void SizeWindow();
    void ColorWindow();
    void Place();
    // The outline, and the border on the window's ground.
    void ShapeWindow();
    WindowShape Shape() const;
    std::int32_t EdgeRadius();
    void DrawBorder(const WindowShape& shape);
    void SystemColorsChanged();

    void BuildCaption();
    void ReadCaption(const ElementPtr& builtin, const ElementPtr& override);
    // Gives the bar what it has at its present size, in both looks.
    void DressCaption();
    void DressInactive();
    void PlaceBox();
    void PlaceLines();
    // The same once more, with the title and the look of the moment.
    void RefreshCaption();
    void ShowLook(bool active);
    void DrawCaptionText(PictureBox& picture);
    void CheckFocus();

    Form& m_Form;
    const App& m_App;
    LogSink& m_Log;
    WindowSkin m_Skin;
    // Of a window with a caption bar.
    std::optional<Bar> m_Bar;
    bool m_HighContrast = false;
    Text m_Caption;
    std::int32_t m_BorderSize = 2;
    std::int32_t m_Radius = 0;
    std::int16_t m_CaptionState = 0;
};

}  // namespace tb
