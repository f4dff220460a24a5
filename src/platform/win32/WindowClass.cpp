#include "platform/win32/WindowClass.h"

#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"

namespace tb {

namespace {

void Require(ATOM registered) {
    if (registered != 0) return;
    const DWORD code = GetLastError();
    if (code != ERROR_CLASS_ALREADY_EXISTS) throw SystemError("RegisterClassEx", code);
}

void Register(WNDCLASSEXA& description, const char* className, WNDPROC procedure) {
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = OwnModule();
    description.lpszClassName = className;
    Require(RegisterClassExA(&description));
}

}  // namespace

void RegisterWindowClass(const std::wstring& className, WNDPROC procedure, const ClassLook& look) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = OwnModule();
    description.hIcon = look.Icon;
    description.hCursor = SystemCursor(IDC_ARROW);
    description.hbrBackground = look.Ground;
    description.lpszClassName = className.c_str();
    Require(RegisterClassExW(&description));
}

void RegisterChannelClass(const char* className, WNDPROC procedure) {
    WNDCLASSEXA description{};
    Register(description, className, procedure);
}

WNDPROC RegisterChannelClass(const char* className, const char* original, WNDPROC procedure) {
    WNDCLASSEXA description{};
    description.cbSize = sizeof description;
    if (!GetClassInfoExA(nullptr, original, &description)) throw SystemError("GetClassInfoEx", GetLastError());
    description.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
    const WNDPROC originalProcedure = description.lpfnWndProc;
    Register(description, className, procedure);
    return originalProcedure;
}

}  // namespace tb
