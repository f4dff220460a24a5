// What the model of windows asks of the system, and what the system tells it. A peer lives from the loading of its form
// to its unloading and is destroyed together with its window; the model works with no peer at all.
// Sizes are twips; the peer knows the screen's scale.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/WindowText.h"
#include "ui/window/Surface.h"
#include "ui/window/Twips.h"

namespace tb {

// An icon of the system, by its 32 significant bits; 0 is none.
using IconNumber = std::int32_t;

// Who ends a form.
enum class UnloadMode : std::int32_t {
    User = 0,     // the user, by the window's frame
    Code = 1,     // the program
    Session = 2,  // Windows, whose session ends
};

enum class WindowStates : std::int32_t { Normal = 0, Minimized = 1, Maximized = 2 };

enum class BorderStyles : std::int32_t {
    None = 0,
    FixedSingle = 1,
    Sizable = 2,
    FixedDialog = 3,
    FixedTool = 4,
    SizableTool = 5,
};

enum class MousePointers : std::int32_t { Default = 0, Hourglass = 11 };

enum class MouseButton : std::int32_t { Left = 1, Right = 2 };

// A key with those that are held down.
struct KeyPress {
    // The system's number of the key: 27 is Escape, 67 the letter C.
    std::int32_t Key = 0;
    bool Shift = false;
    bool Control = false;
    bool Alt = false;
};

// One of the screens, at its place among them: the main one begins at 0, 0, others may lie left of or above it.
struct Screen {
    TwipRect Whole;
    // What the system's bars leave of it.
    TwipRect Room;
    bool operator==(const Screen&) const = default;
};

// How translucent a window is.
struct Layering {
    // Pixels of this colour are not there.
    std::optional<Color> ClearColor;
    // 0 to 255, 255 for a solid window.
    std::uint8_t Alpha = 255;
    bool operator==(const Layering&) const = default;
};

// One row of a popup menu; its rows are those of a menu below it.
struct MenuRow {
    // What PopupMenu answers, from 1 on.
    std::int32_t Id = 0;
    // "&" stands before the letter that chooses it.
    Text Caption;
    bool IsSeparator = false;
    bool IsEnabled = true;
    bool IsChecked = false;
    bool IsDefault = false;
    std::vector<MenuRow> Rows;
};

class WindowPeer {
public:
    virtual ~WindowPeer() = default;

    virtual void SetBounds(const TwipRect& bounds) = 0;
    virtual void SetVisible(bool visible) = 0;
    virtual void SetEnabled(bool enabled) = 0;
    virtual void SetText(const Text& text) = 0;
    virtual void SetColors(const ControlColors& colors) = 0;
    virtual void SetFont(const Font& font) = 0;
    virtual void SetFocus() = 0;
    virtual void SetZOrder(bool toBack) = 0;
    // Shown when the mouse rests on the window; empty for none. A form has none.
    virtual void SetToolTip(const Text& text) = 0;
};

// A window that is drawn on.
class DrawnPeer : public WindowPeer {
public:
    // As large as the room inside the window; what was drawn is lost with another ground colour, and where the window
    // becomes smaller.
    virtual tb::Surface& Surface() = 0;
    // Under all that is drawn, at the upper left corner; null for none.
    virtual void SetPicture(const PictureRef& picture) = 0;
    // All events of the mouse come here until that ends, wherever it is.
    virtual void SetCapture(bool capture) = 0;
};

// A window inside a form that holds others.
class BoxPeer : public DrawnPeer {
public:
    // The Tab key reaches it.
    virtual void SetTabStop(bool tabStop) = 0;
};

class LabelPeer : public WindowPeer {
public:
    // What stands beneath it is seen between its letters.
    virtual void SetTransparent(bool transparent) = 0;
    virtual void SetAlignment(std::int32_t alignment) = 0;
};

// Not windows of the system: they are painted into the window that holds them, beneath all windows on it.
class ImagePeer {
public:
    virtual ~ImagePeer() = default;
    virtual void SetBounds(const TwipRect& bounds) = 0;
    virtual void SetVisible(bool visible) = 0;
    virtual void SetZOrder(bool toBack) = 0;
    // Stretched to the bounds, or cut off by them.
    virtual void SetPicture(const PictureRef& picture, bool stretch) = 0;
};

class LinePeer {
public:
    virtual ~LinePeer() = default;
    virtual void SetEnds(const TwipPoint& from, const TwipPoint& to) = 0;
    virtual void SetVisible(bool visible) = 0;
    virtual void SetZOrder(bool toBack) = 0;
    virtual void SetColor(Color color) = 0;
};

// What the mouse does on a window; places are relative to its inner corner.
class PointerEvents {
public:
    virtual ~PointerEvents() = default;
    virtual std::shared_ptr<void> KeepAlive() = 0;
    virtual void Pressed(MouseButton button, const TwipPoint& at) = 0;
    virtual void Released(MouseButton button, const TwipPoint& at) = 0;
    virtual void Moved(const TwipPoint& at) = 0;
    // It is over the window no more; not told while the window has the capture.
    virtual void WentAway() = 0;
    // The capture has ended otherwise than by SetCapture.
    virtual void CaptureLost() = 0;
};

class TextBoxPeer : public WindowPeer {
public:
    virtual void SetLocked(bool locked) = 0;
    // Characters in front of the caret, which is scrolled into view.
    virtual std::int32_t SelStart() const = 0;
    virtual void SetSelStart(std::int32_t position) = 0;
};

class TextBoxEvents {
public:
    virtual ~TextBoxEvents() = default;
    virtual std::shared_ptr<void> KeepAlive() = 0;
    // The text was changed by the user or by another process, not by SetText.
    virtual void TextChanged(const Text& text) = 0;
};

class CommandButtonPeer : public WindowPeer {
public:
    // Enter presses it wherever the focus is, but on another command button.
    virtual void SetDefault(bool isDefault) = 0;
    // Escape presses it.
    virtual void SetCancel(bool isCancel) = 0;
};

class OptionButtonPeer : public WindowPeer {
public:
    virtual void SetSelected(bool selected) = 0;
    // The Tab key reaches it; arrow keys always do.
    virtual void SetTabStop(bool tabStop) = 0;
};

class ButtonEvents {
public:
    virtual ~ButtonEvents() = default;
    virtual std::shared_ptr<void> KeepAlive() = 0;
    // By the mouse or by a key. The peer may be gone afterwards.
    virtual void Clicked() = 0;
};

class TimerPeer {
public:
    virtual ~TimerPeer() = default;
    // From now on every so many milliseconds; replaces what runs.
    virtual void Start(std::int32_t milliseconds) = 0;
    virtual void Stop() = 0;
};

class TimerEvents {
public:
    virtual ~TimerEvents() = default;
    virtual std::shared_ptr<void> KeepAlive() = 0;
    virtual void Tick() = 0;
};

// A top-level window; hidden when it is made.
class FormPeer : public DrawnPeer {
public:
    virtual WindowHandle Window() const = 0;
    // The room inside the frame.
    virtual TwipSize ClientSize() const = 0;
    virtual void SetWindowState(WindowStates state) = 0;
    virtual void SetBorderStyle(BorderStyles style) = 0;
    // Null gives the program's own icon, as does a picture that is no icon.
    virtual void SetIcon(const PictureRef& picture) = 0;
    virtual IconNumber Icon() const = 0;
    // False when the system refuses.
    virtual bool SetForeground() = 0;
    virtual bool IsForeground() const = 0;
    // Shows in the task list that the window wants the user.
    virtual void Flash() = 0;
    // As SetVisible, but the window that is active stays so, and a click does not change it either.
    virtual void ShowInactive() = 0;
    // Above all windows that are not so themselves, or among the others again. With `activate` a window that is shown
    // becomes the active one.
    virtual void SetTopMost(bool onTop, bool activate) = 0;
    // Stays in front of the owner and goes with it; null for none. Both are of the same system.
    virtual void SetOwner(FormPeer* owner) = 0;
    // A window without a frame stands in the task list too, with the keys and the menu of a framed one.
    virtual void SetInTaskList(bool inTaskList) = 0;
    // Only what lies in the rectangle is there, without its right and bottom edges, with corners of an ellipse that is
    // `corner` wide and high. Pixels of the window with its frame.
    virtual void SetRoundRegion(PixelPoint from, PixelPoint to, std::int32_t corner) = 0;
    virtual void SetLayering(const Layering& layering) = 0;
    // The mouse, whose button is down, moves the window as if it held the frame's caption, until it is released.
    // Messages are served meanwhile.
    virtual void DragByCaption() = 0;
    // Over the form and all that stands on it.
    virtual void SetMousePointer(MousePointers pointer) = 0;
    // Shows the rows at the mouse and returns the id of the chosen one, 0 for none. `flags` are those of TrackPopupMenu
    // (2 takes the right button too). Messages are served meanwhile.
    virtual std::int32_t PopupMenu(const std::vector<MenuRow>& rows, std::uint32_t flags) = 0;
    // Ends what the system does with this window while it serves messages in a loop of its own: a menu that is open, a
    // move or a sizing by the mouse. Without this the loop would outlive the window, and take the program's end for its
    // own.
    virtual void EndModes() = 0;

    // Hidden, after all others in the order of the Tab key. `box` holds the window; null is the form itself.
    virtual std::unique_ptr<BoxPeer> MakeBox(BoxPeer* box, PointerEvents& events, bool hasBorder) = 0;
    // With `useMnemonic`, "&" stands before the letter that moves the focus behind the label.
    virtual std::unique_ptr<LabelPeer> MakeLabel(BoxPeer* box, PointerEvents& events, bool useMnemonic) = 0;
    // Beneath those that were made before.
    virtual std::unique_ptr<ImagePeer> MakeImage(BoxPeer* box) = 0;
    virtual std::unique_ptr<LinePeer> MakeLine(BoxPeer* box) = 0;
    virtual std::unique_ptr<CommandButtonPeer> MakeCommandButton(BoxPeer* box, ButtonEvents& events) = 0;
    virtual std::unique_ptr<OptionButtonPeer> MakeOptionButton(BoxPeer* box, ButtonEvents& events) = 0;
    virtual std::unique_ptr<TextBoxPeer> MakeTextBox(TextBoxEvents& events, bool multiLine) = 0;
    virtual std::unique_ptr<TimerPeer> MakeTimer(TimerEvents& events) = 0;
};

class FormEvents {
public:
    virtual ~FormEvents() = default;
    virtual std::shared_ptr<void> KeepAlive() = 0;
    // The user or the system has moved or sized the window, or changed its state. `bounds` have no meaning while it is
    // minimised.
    virtual void WindowPlaced(WindowStates state, const TwipRect& bounds) = 0;
    // The user closes the window, by its frame, by Alt and F4, or by Escape where no button that can be pressed is the
    // one of Escape. The peer may be gone afterwards.
    virtual void CloseAsked() = 0;
    // It is the active window from now on, or no more.
    virtual void Activated(bool active) = 0;
    // A key on the form or on what stands on it, before anybody else has it. True when that is all.
    virtual bool KeyPressed(const KeyPress& key) = 0;
    // The user has chosen other colours, or high contrast, for the system.
    virtual void SystemColorsChanged() = 0;
    // The session is about to end: False forbids it.
    virtual bool SessionEnding() = 0;
    // It ends. The peer may be gone afterwards.
    virtual void SessionEnds() = 0;
};

class WindowSystem {
public:
    virtual ~WindowSystem() = default;
    // Error 51 when there is no desktop to make windows on.
    virtual std::unique_ptr<FormPeer> MakeForm(FormEvents& events, PointerEvents& pointer) = 0;
    // The whole of the main screen.
    virtual TwipSize ScreenSize() const = 0;
    // At least one; the first is the main one.
    virtual std::vector<Screen> Screens() const = 0;
    // Where the mouse is.
    virtual TwipPoint Pointer() const = 0;
    virtual TwipScale Scale() const = 0;
    // How large a text is. Lines end at CR LF; with a width above 0 they are broken there too, at blanks, and inside
    // words that are longer.
    virtual TwipSize MeasureText(const Text& text, const Font& font, Twips width) const = 0;
    // The picture that an image file shows, at the screen's scale; null when it cannot be decoded. Does not throw.
    virtual PictureRef Decode(const Text& bytes) const = 0;
    // The user wants colours that are easy to tell apart, and nothing else.
    virtual bool HighContrast() const = 0;
    // One of the system's colours as it is now; any other one comes back.
    virtual Color Resolved(Color color) const = 0;
    // Serves messages until `done`, which is asked after each, or until the end of the program's message loop is due.
    virtual void ServeUntil(const std::function<bool()>& done) = 0;
};

}  // namespace tb
