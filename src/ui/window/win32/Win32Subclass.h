// Another procedure in front of that of a window of the system's own class.
#pragma once

#include <windows.h>

namespace tb {

class Win32WindowSystem;

class Win32Subclass {
public:
    Win32Subclass(const Win32Subclass&) = delete;
    Win32Subclass& operator=(const Win32Subclass&) = delete;
    virtual ~Win32Subclass() = default;

protected:
    explicit Win32Subclass(const Win32WindowSystem& system) : m_OwnSystem(system) {}

    // True when the message is dealt with and `result` answers it; the object may be gone then. What it throws goes to
    // the system.
    virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) = 0;
    // From the first to the second one; the window must not go in between.
    void Attach(HWND window);
    void Detach(HWND window);

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR object) noexcept;

    const Win32WindowSystem& m_OwnSystem;
};

}  // namespace tb
