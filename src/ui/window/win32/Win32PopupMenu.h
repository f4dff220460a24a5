// Popup menus of the system.
#pragma once

#include <windows.h>

#include "ui/window/Peers.h"

namespace tb {

// Shows the rows at the mouse and waits for the user while messages are served; FormPeer::PopupMenu. `owner` may be
// destroyed meanwhile. Error 51 when the menu cannot be made.
std::int32_t TrackPopup(HWND owner, const std::vector<MenuRow>& rows, std::uint32_t flags);

}  // namespace tb
