// Messages and dialogs of the program that wait for the user.
#pragma once

#include "shell/helpers/App.h"

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

// A modal message; an empty title becomes the product's name. The number of the button pressed.
std::int32_t ShowMessage(const App& app, const Text& prompt, std::int32_t buttons, const Text& title = {});

}  // namespace tb
