#include "submissions/win32/Win32ClipboardFormats.h"

#include <windows.h>

#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Text.h"

namespace tb {

ClipboardFormat Win32ClipboardFormats::Register(const Text& name) {
    const UINT format = RegisterClipboardFormatW(ToSystem(name).c_str());
    if (format == 0) throw SystemError("RegisterClipboardFormat", GetLastError());
    return static_cast<ClipboardFormat>(format);
}

}  // namespace tb
