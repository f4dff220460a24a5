#include "platform/win32/ServedWait.h"

#include <algorithm>

#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32Errors.h"

namespace tb {

namespace {

// So that a flood of messages, or a window that asks to be painted for ever, holds up no limit.
constexpr int MessagesAtOnce = 50;
constexpr std::chrono::milliseconds AskAgain(50);

}  // namespace

ServedWait::ServedWait(std::int32_t wholeMilliseconds, std::function<bool()> isCancelled)
    : m_WholeEnd(Clock::now() + std::chrono::milliseconds(wholeMilliseconds)), m_IsCancelled(std::move(isCancelled)) {}

ServedWait::End ServedWait::For(HANDLE event, std::int32_t milliseconds) const {
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (;;) {
        if (!ServeWaitingMessages(MessagesAtOnce)) return End::Quit;
        if (m_IsCancelled && m_IsCancelled()) return End::Cancelled;
        const Clock::time_point now = Clock::now();
        if (now >= m_WholeEnd) return End::WholeTimedOut;
        if (WaitForSingleObject(event, 0) == WAIT_OBJECT_0) return End::Signalled;
        if (now >= end) return End::TimedOut;
        // Rounded up, or the last part of a millisecond would be waited for in a busy loop.
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(std::min(end, m_WholeEnd) - now);
        const auto nap = static_cast<DWORD>(std::min(left, AskAgain).count());
        const DWORD woken = MsgWaitForMultipleObjectsEx(1, &event, nap, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (woken == WAIT_FAILED) throw SystemError("MsgWaitForMultipleObjectsEx", GetLastError());
        if (woken == WAIT_OBJECT_0) return End::Signalled;
    }
}

}  // namespace tb
