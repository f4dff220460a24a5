// What the mouse does on one window, as events of the model.
#pragma once

#include <windows.h>

#include "ui/window/Peers.h"

namespace tb {

class Win32WindowSystem;

class Win32Pointer {
public:
    // Both must outlive it.
    Win32Pointer(const Win32WindowSystem& system, PointerEvents& events) : m_System(system), m_Events(events) {}

    // For each message of the window, which the peer that has this object need not outlive. What a handler throws goes
    // to the system.
    void OnMessage(HWND window, UINT message, LPARAM lParam) noexcept;
    void SetCapture(HWND window, bool capture);

private:
    void Dispatch(HWND window, UINT message, LPARAM lParam);
    // The system tells once that the mouse has left.
    void Watch(HWND window);
    // While it had the capture, the mouse may have left unseen.
    void FindOut(HWND window) const;

    const Win32WindowSystem& m_System;
    PointerEvents& m_Events;
    // The mouse is, or was, over the window, and nobody has been told otherwise.
    bool m_IsOver = false;
    bool m_HasCapture = false;
};

}  // namespace tb
