// The codes of WinHTTP and of the sockets below it as words for the log.
#pragma once

#include <windows.h>

#include "base/text.h"

namespace tb {

Text NetworkErrorText(DWORD code);

}  // namespace tb
