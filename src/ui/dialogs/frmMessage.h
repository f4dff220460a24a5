// The program's own message box, in the program's skin: the buttons and icons of the system's, or buttons of one's own,
// of which some leave the box open.
#pragma once

#include "shell/helpers/Messages.h"
#include "ui/dialogs/MessageFlags.h"
#include "ui/dialogs/MessageLayout.h"
#include "ui/skin/tbSkin.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Form.h"
#include "ui/window/Label.h"
#include "ui/window/PictureBox.h"

namespace tb {

// Made with std::make_shared, one for each message. From its load to its unloading it counts as an open dialog.
class frmMessage : public Form {
public:
    // Not loaded. All three outlive it.
    frmMessage(Forms& forms, App& app, LogSink& log);

    // As the system's box: returns when a button that closes it is pressed, with the number of the answer; 0 when the
    // program's end closed it. Messages are served meanwhile.
    std::int32_t MsgBox(const Message& message);

    // For a use of its own; what is set counts from the next ShowMessage on. 16 stop, 32 question, 48 exclamation, 64
    // information; any other number is none.
    void MessageIcon(std::int32_t icon) { m_Icon = icon; }
    // Of this window alone.
    void MessageTitle(const Text& title);
    // At most four.
    void ButtonText(const std::vector<Text>& captions) { m_ButtonText = captions; }
    // By button: a click on it closes the box. What is missing is True.
    void ButtonsUnload(const std::vector<bool>& unload) { m_ButtonsUnload = unload; }
    void TopMost(bool onTop) { m_TopMost = onTop; }
    // From 1 on.
    void ButtonDefault(std::int32_t number) { m_ButtonDefault = number; }
    // The button that was pressed last, from 1 on; 0 for none, as after the program's end.
    std::int32_t SelectedButton() const { return m_SelectedButton; }
    // A button was pressed that leaves the box open.
    Event<std::int32_t> ButtonEvent;
    // Shows it in the middle of the screen with the mouse, in front of the window that was there last, and returns when
    // it is closed. Esc and the frame press "Cancel", without it the last button that closes the box; they close it in
    // any case.
    void ShowMessage(const Text& prompt);

    Label& lblMessage;
    PictureBox& picIcon;
    PictureBox& picButtons;
    // The first of the array.
    CommandButton& cmdButton;
    tbSkin& tbSkin1;

private:
    void Loaded();
    void PlaceControls();
    void TakeColor(Color color);
    void Closing(bool& cancel, UnloadMode mode);
    void KeyDown(const KeyPress& key, bool& handled);
    // The button of that number, or none.
    void Press(std::int32_t number);
    void ShowTitle();
    void FocusDefault();
    void ShowIcon();
    void LayOut(const Text& prompt);
    void PlaceButtons(const std::vector<TwipRect>& row);
    CommandButton& Button(size_t index);
    bool Unloads(size_t button) const { return button >= m_ButtonsUnload.size() || m_ButtonsUnload[button]; }
    std::int32_t Escape() const { return EscapeButton(m_ButtonText, m_ButtonsUnload); }

    App& m_App;
    LogSink& m_Log;
    std::int32_t m_Icon = 0;
    Text m_Title;
    Text m_Prompt;
    std::vector<Text> m_ButtonText{"OK"};
    std::vector<bool> m_ButtonsUnload;
    std::int32_t m_ButtonDefault = 1;
    bool m_TopMost = false;
    std::int32_t m_SelectedButton = 0;
    std::optional<OpenDialog> m_Open;
};

}  // namespace tb
