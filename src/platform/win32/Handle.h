// The one owner of Windows handles. A trait tells which value means "none" and how a handle of its kind is closed.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>

namespace tb {

// How many handles all owners of the process hold. Nothing but the search for leaks looks at it.
class HandleCount {
public:
    static std::int32_t Live() { return s_Live; }

protected:
    static void Add(std::int32_t count) { s_Live += count; }

private:
    inline static std::atomic<std::int32_t> s_Live{0};
};

// Move-only. What it holds is closed when it goes, when another handle is moved into it and by Close(). Closing keeps
// the thread's last error, so that a failing call may be followed by the end of a scope.
template <typename Trait>
class Handle : private HandleCount {
public:
    using Value = typename Trait::Value;

    Handle() = default;
    // Takes over `value`, which may be the kind's "none".
    explicit Handle(Value value) : m_Value(value) { Count(1); }
    Handle(Handle&& other) noexcept : Handle(other.Release()) {}
    Handle& operator=(Handle&& other) noexcept {
        if (this != &other) {
            Close();
            m_Value = other.Release();
            Count(1);
        }
        return *this;
    }
    ~Handle() { Close(); }

    explicit operator bool() const { return m_Value != Trait::None(); }
    Value Get() const { return m_Value; }

    // Hands the handle to the caller, who closes it.
    [[nodiscard]] Value Release() {
        Count(-1);
        const Value value = m_Value;
        m_Value = Trait::None();
        return value;
    }

    // False when the system refused; the handle is given up all the same.
    bool Close() {
        if (m_Value == Trait::None()) return true;
        const DWORD lastError = GetLastError();
        const bool closed = Trait::Close(Release());
        if (closed) SetLastError(lastError);
        return closed;
    }

    // How many handles of this kind the process owns.
    static std::int32_t Live() { return s_Live; }

private:
    void Count(std::int32_t by) {
        if (m_Value == Trait::None()) return;
        s_Live += by;
        Add(by);
    }

    inline static std::atomic<std::int32_t> s_Live{0};
    Value m_Value = Trait::None();
};

// Files as CreateFile returns them.
struct FileTrait {
    using Value = HANDLE;
    static Value None() { return INVALID_HANDLE_VALUE; }
    static bool Close(Value value) { return CloseHandle(value) != FALSE; }
};

// A listing of a folder.
struct FindTrait {
    using Value = HANDLE;
    static Value None() { return INVALID_HANDLE_VALUE; }
    static bool Close(Value value) { return FindClose(value) != FALSE; }
};

// Processes, threads, events.
struct ObjectTrait {
    using Value = HANDLE;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return CloseHandle(value) != FALSE; }
};

// Windows of the calling thread.
struct WindowTrait {
    using Value = HWND;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return DestroyWindow(value) != FALSE; }
};

// Menus, with those below them.
struct MenuTrait {
    using Value = HMENU;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return DestroyMenu(value) != FALSE; }
};

// Icons that were made, not those shared with the system.
struct IconTrait {
    using Value = HICON;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return DestroyIcon(value) != FALSE; }
};

// Memory and other device contexts that were made, not those that a window lends.
struct DcTrait {
    using Value = HDC;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return DeleteDC(value) != FALSE; }
};

// Fonts, bitmaps, brushes and regions. One that is selected into a device context cannot be closed.
template <typename Kind>
struct GdiTrait {
    using Value = Kind;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return DeleteObject(value) != FALSE; }
};

// Memory that other programs can be handed.
struct GlobalTrait {
    using Value = HGLOBAL;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return GlobalFree(value) == nullptr; }
};

using OwnedFile = Handle<FileTrait>;
using OwnedFind = Handle<FindTrait>;
using OwnedObject = Handle<ObjectTrait>;
using OwnedWindow = Handle<WindowTrait>;
using OwnedMenu = Handle<MenuTrait>;
using OwnedIcon = Handle<IconTrait>;
using OwnedGlobal = Handle<GlobalTrait>;
using OwnedDc = Handle<DcTrait>;
using OwnedFont = Handle<GdiTrait<HFONT>>;
using OwnedBitmap = Handle<GdiTrait<HBITMAP>>;
using OwnedBrush = Handle<GdiTrait<HBRUSH>>;
using OwnedRegion = Handle<GdiTrait<HRGN>>;

}  // namespace tb
