// What the model of windows asks of the system, and what the system tells it. A peer lives from the loading of its form
// to its unloading and is destroyed together with its window; the model works with no peer at all.
// Sizes are twips; the peer knows the screen's scale.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/WindowText.h"
#include "ui/window/Twips.h"
#include "ui/window/Value.h"

namespace tb {

// 0x00BBGGRR; with the top bit set, the number of a colour that the user has chosen for the system.
using Color = std::int32_t;

struct ControlColors {
    Color Back = 0;
    Color Fore = 0;
};

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
    virtual void SetFocus() = 0;
    virtual void SetZOrder(bool toBack) = 0;
    // Shown when the mouse rests on the window; empty for none. A form has none.
    virtual void SetToolTip(const Text& text) = 0;
};

// A window inside a form that holds others.
class BoxPeer : public WindowPeer {};

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
class FormPeer : public WindowPeer {
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
    // Above all windows that are not so themselves, or among the others again. Activates a window that is shown.
    virtual void SetTopMost(bool onTop) = 0;
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
    virtual std::unique_ptr<BoxPeer> MakeBox(BoxPeer* box, bool hasBorder) = 0;
    // With `useMnemonic`, "&" stands before the letter that moves the focus behind the label.
    virtual std::unique_ptr<WindowPeer> MakeLabel(BoxPeer* box, bool useMnemonic) = 0;
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
    // The user closes the window. The peer may be gone afterwards.
    virtual void CloseAsked() = 0;
    // The session is about to end: False forbids it.
    virtual bool SessionEnding() = 0;
    // It ends. The peer may be gone afterwards.
    virtual void SessionEnds() = 0;
};

class WindowSystem {
public:
    virtual ~WindowSystem() = default;
    // Error 51 when there is no desktop to make windows on.
    virtual std::unique_ptr<FormPeer> MakeForm(FormEvents& events) = 0;
    // The whole of the main screen.
    virtual TwipSize ScreenSize() const = 0;
    virtual TwipScale Scale() const = 0;
    // Serves messages until `done`, which is asked after each, or until the end of the program's message loop is due.
    virtual void ServeUntil(const std::function<bool()>& done) = 0;
};

}  // namespace tb
