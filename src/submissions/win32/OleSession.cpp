#include "submissions/win32/OleSession.h"

#include <windows.h>

#include <ole2.h>

#include "platform/win32/Win32Errors.h"

namespace tb {

OleSession::OleSession() {
    const HRESULT result = OleInitialize(nullptr);
    if (FAILED(result)) throw SystemError("OleInitialize", static_cast<DWORD>(result));
}

OleSession::~OleSession() { OleUninitialize(); }

}  // namespace tb
