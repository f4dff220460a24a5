// An edit control. The peer keeps the text itself and gives it to the system's control only while it is shown: that one
// lays out whatever is set into it, seen or not, and with text of other processes this costs seconds for 64 KB of
// neutral characters and has crashed inside the layout.
#pragma once

#include "ui/window/win32/Win32FormPeer.h"

namespace tb {

class Win32TextBoxPeer : public Win32Peer<TextBoxPeer>, private Win32Child {
public:
    // Hidden. Takes texts of any length, single-byte, up to their first NUL. `form` must outlive it. Error 51.
    Win32TextBoxPeer(const Win32WindowSystem& system, Win32FormPeer& form, TextBoxEvents& events, bool multiLine);
    ~Win32TextBoxPeer() override;

    void SetVisible(bool visible) override;
    void SetText(const Text& text) override;
    void SetToolTip(const Text& text) override { m_Form.SetTip(Handle(), text); }
    void SetLocked(bool locked) override;
    std::int32_t SelStart() const override;
    void SetSelStart(std::int32_t position) override;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT OnSetText(const char* text);
    LRESULT OnGetText(char* buffer, size_t size) const;
    LRESULT CallEdit(UINT message, WPARAM wParam, LPARAM lParam) const;

    void OnCommand(WORD code) override;
    HBRUSH OnColor(HDC context) override { return Colored(context); }
    void OnFormVisible(bool visible) override;
    // Follows from both visibilities.
    void ShowText();

    Win32FormPeer& m_Form;
    TextBoxEvents& m_Events;
    WNDPROC m_Edit = nullptr;
    Text m_Content;
    std::int32_t m_SelStart = 0;
    bool m_Visible = false;
    bool m_FormVisible = false;
    // The edit control holds the text.
    bool m_Shown = false;
    // The program sets the text: no event follows.
    bool m_Muted = false;
    // The edit control is being given a text.
    bool m_Filling = false;
};

}  // namespace tb
