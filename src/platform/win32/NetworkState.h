// Whether there is a network. In a source of its own, because the system's headers for it and for WinHTTP exclude each
// other.
#pragma once

namespace tb {

// False when the system knows that it has none.
bool HasNetwork();

}  // namespace tb
