#include "platform/win32/NetworkState.h"

#include <windows.h>
#include <wininet.h>

namespace tb {

bool HasNetwork() {
    DWORD flags = 0;
    return InternetGetConnectedState(&flags, 0) != FALSE;
}

}  // namespace tb
