// The system's error codes as errors of the program.
#pragma once

#include <windows.h>

#include "base/errors.h"

namespace tb {

// The number that a code of GetLastError about a file stands for; platform/Files.h has the list.
ErrorNumber FileErrorNumber(DWORD code);

// For calls that cannot fail on a sound system: error 51 whose description names the call and its code.
RuntimeError SystemError(const char* call, DWORD code);

}  // namespace tb
