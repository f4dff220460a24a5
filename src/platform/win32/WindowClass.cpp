#include "platform/win32/WindowClass.h"

#include "platform/win32/Win32Errors.h"

namespace tb {

namespace {

void Register(WNDCLASSEXA& description, const char* className) {
    description.cbSize = sizeof description;
    description.hInstance = GetModuleHandleA(nullptr);
    description.lpszClassName = className;
    if (RegisterClassExA(&description) != 0) return;
    const DWORD code = GetLastError();
    if (code != ERROR_CLASS_ALREADY_EXISTS) throw SystemError("RegisterClassEx", code);
}

}  // namespace

void RegisterWindowClass(const char* className, WNDPROC procedure) {
    WNDCLASSEXA description{};
    description.lpfnWndProc = procedure;
    Register(description, className);
}

WNDPROC RegisterSuperclass(const char* className, const char* original, WNDPROC procedure) {
    WNDCLASSEXA description{};
    description.cbSize = sizeof description;
    if (!GetClassInfoExA(nullptr, original, &description)) throw SystemError("GetClassInfoEx", GetLastError());
    description.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
    const WNDPROC originalProcedure = description.lpfnWndProc;
    description.lpfnWndProc = procedure;
    Register(description, className);
    return originalProcedure;
}

}  // namespace tb
