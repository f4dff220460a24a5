// A static control with text, which is drawn here: what stands beneath it may be seen between its letters.
#pragma once

#include "ui/window/win32/Win32ChildPeer.h"
#include "ui/window/win32/Win32Subclass.h"

namespace tb {

class Win32LabelPeer final : public Win32ChildPeer<LabelPeer>, private Win32Subclass {
public:
    // Error 51.
    Win32LabelPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, PointerEvents& pointer,
                   bool useMnemonic);
    ~Win32LabelPeer() override;

    void SetTransparent(bool transparent) override;
    void SetAlignment(std::int32_t alignment) override;

private:
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
    void OnPaint(HDC context);
    void Draw(HDC context, const RECT& area) const;
    void DrawTextIn(HDC context) const;
    void Invalidate() { InvalidateRect(Handle(), nullptr, TRUE); }

    Win32Pointer m_Pointer;
    UINT m_Layout;
    bool m_IsTransparent = false;
};

}  // namespace tb
