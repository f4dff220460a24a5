// Messages and dialogs of the program that wait for the user.
#pragma once

#include "shell/helpers/App.h"
#include "shell/helpers/Opening.h"

namespace tb {

// One of them, for as long as it lives: the program counts as having one open (App::ModalDialogOpen) until the last of
// several, one above the other, is closed.
class OpenDialog {
public:
    // `app` outlives it.
    explicit OpenDialog(const App& app) : m_App(app) { ++m_App.OpenDialogs; }
    OpenDialog(const OpenDialog&) = delete;
    OpenDialog& operator=(const OpenDialog&) = delete;
    ~OpenDialog() { --m_App.OpenDialogs; }

private:
    const App& m_App;
};

// A message that waits for the user.
struct Message {
    Text Prompt;
    // Of MessageButtons.
    std::int32_t Buttons = MessageButtons::Plain;
    Text Title;
    // What the button Help opens: the name of a help file beside the program, empty for the program's own, and a topic
    // of it.
    Text HelpFile;
    std::int32_t Context = HelpTopic::None;
};

// The program's own message boxes, which lie further out.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    // Shows the message, counted as an open dialog, and returns when it is closed: the number of the button pressed. 0
    // when the program's end closed it. Messages are served meanwhile.
    virtual std::int32_t Show(const Message& message) = 0;
};

// A modal message in the program's own box, or, where that is not to be had, in the system's; an empty title becomes
// the product's name. The number of the button pressed; it may be none of the buttons where the program's end closed
// the box.
std::int32_t ShowMessage(const App& app, const Text& prompt, std::int32_t buttons, const Text& title = {},
                         const Text& helpFile = {}, std::int32_t context = HelpTopic::None);

}  // namespace tb
