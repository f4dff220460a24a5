// The program's end of the browser channel without the program: the two windows under their names, on a thread of their
// own.
#pragma once

#include <thread>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Win32WindowText.h"
#include "platform/win32/WindowClass.h"
#include "windows/Eventually.h"
#include "windows/OnlyProgram.h"

namespace tb {

class FakeChannel {
public:
    // What answers a request; set it before the first one.
    Text Reply = "OK";

    FakeChannel() : m_Ready(CreateEventA(nullptr, TRUE, FALSE, nullptr)), m_Thread([this] { Run(); }) {
        WaitForSingleObject(m_Ready.Get(), INFINITE);
    }
    FakeChannel(const FakeChannel&) = delete;
    FakeChannel& operator=(const FakeChannel&) = delete;
    ~FakeChannel() {
        SetEvent(m_Awake.Get());
        PostThreadMessageA(m_ThreadId, WM_QUIT, 0, 0);
        m_Thread.join();
    }

    // From now on the program does not come to an answer.
    void Hang() { ResetEvent(m_Awake.Get()); }
    // The last text that came; read it when its sender is back.
    const Text& Request() const { return m_Request; }

private:
    void Run() {
        RegisterChannelClass(NormalClasses.Window, &DefWindowProcA);
        RegisterChannelClass(NormalClasses.TextBox, &Procedure);
        const OwnedWindow tray(CreateWindowExA(0, NormalClasses.Window, ChannelCaption, WS_OVERLAPPED, 0, 0, 0, 0,
                                               nullptr, nullptr, GetModuleHandleA(nullptr), nullptr));
        // It goes with its parent.
        CreateWindowExA(0, NormalClasses.TextBox, "", WS_CHILD, 0, 0, 0, 0, tray.Get(), nullptr,
                        GetModuleHandleA(nullptr), this);
        m_ThreadId = GetCurrentThreadId();
        SetEvent(m_Ready.Get());
        MSG message;
        while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
        auto* const self = WindowObject<FakeChannel>(window, message, lParam);
        if (self == nullptr || message != WM_SETTEXT) return DefWindowProcA(window, message, wParam, lParam);
        self->m_Request = reinterpret_cast<const char*>(lParam);
        WaitForSingleObject(self->m_Awake.Get(), DeadlineMs);
        if (self->m_Request != WakeUpText) Win32WindowText().SendText(std::stoi(self->m_Request), self->Reply);
        return TRUE;
    }

    OnlyProgram m_Only;
    OwnedObject m_Ready;
    OwnedObject m_Awake{CreateEventA(nullptr, TRUE, TRUE, nullptr)};
    DWORD m_ThreadId = 0;
    Text m_Request;
    std::thread m_Thread;
};

}  // namespace tb
