#include "components/tbBHBridge/win32/BoundedWindowText.h"

#include "base/errors.h"

namespace tb {

BoundedWindowText::BoundedWindowText(std::uint32_t milliseconds) : m_Milliseconds(milliseconds) {
    if (milliseconds == 0) throw Error(ErrorNumber::InvalidCall);
}

void BoundedWindowText::SendText(WindowHandle window, const Text& text) {
    DWORD_PTR result = 0;
    m_Delivered = SendMessageTimeoutA(ToHwnd(window), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()),
                                      SMTO_NORMAL | SMTO_ABORTIFHUNG, m_Milliseconds, &result) != 0;
}

}  // namespace tb
