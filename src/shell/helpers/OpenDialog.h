// A message or a dialog of the program that waits for the user, for as long as it lives: the program counts as having
// one open (App::ModalDialogOpen) until the last of several, one above the other, is closed.
#pragma once

#include "shell/helpers/App.h"

namespace tb {

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

}  // namespace tb
