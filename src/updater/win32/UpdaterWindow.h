// The updater's window: a line of text, a progress bar, and a button when there is something to read.
#pragma once

#include "platform/win32/Handle.h"
#include "updater/Updater.h"

namespace tb {

// By class and caption other programs know that an updater runs. The window cannot be closed while it works.
class UpdaterWindow : public UpdaterScreen {
public:
    // `only` is held for as long as the window is there: what tells other updaters to leave. Error 51.
    UpdaterWindow(const Text& caption, OwnedObject only);
    UpdaterWindow(const UpdaterWindow&) = delete;
    UpdaterWindow& operator=(const UpdaterWindow&) = delete;
    ~UpdaterWindow() override { Close(); }

    void Say(const Text& message) override;
    void Progress(int percent) override;
    void Tell(const Text& message) override;
    void Close() override;
    // A box of the system, with the caption of the window but not its class.
    void TellClosed(const Text& message) override;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    bool Handle(UINT message, WPARAM wParam);
    void Fill();
    // In pixels of 96 to an inch.
    HWND Add(const wchar_t* className, const wchar_t* text, DWORD style, RECT place, UINT id) const;

    const Text m_Caption;
    OwnedObject m_Only;
    OwnedWindow m_Window;
    OwnedFont m_Font;
    HWND m_Label = nullptr;
    HWND m_Bar = nullptr;
    HWND m_Button = nullptr;
    bool m_IsTelling = false;
};

}  // namespace tb
