#include "ui/window/win32/Win32PopupMenu.h"

#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

OwnedMenu MakeMenu(const std::vector<MenuRow>& rows);

void Append(HMENU menu, const MenuRow& row, UINT position) {
    OwnedMenu below;
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_FTYPE | MIIM_ID | MIIM_STATE;
    item.wID = static_cast<UINT>(row.Id);
    item.fType = row.IsSeparator ? MFT_SEPARATOR : MFT_STRING;
    item.fState = static_cast<UINT>(row.IsEnabled ? MFS_ENABLED : MFS_DISABLED) |
                  static_cast<UINT>(row.IsChecked ? MFS_CHECKED : MFS_UNCHECKED) |
                  static_cast<UINT>(row.IsDefault ? MFS_DEFAULT : 0);
    std::wstring caption = ToSystem(row.Caption);
    if (!row.IsSeparator) {
        item.fMask |= MIIM_STRING;
        item.dwTypeData = caption.data();
    }
    if (!row.Rows.empty()) {
        below = MakeMenu(row.Rows);
        item.fMask |= MIIM_SUBMENU;
        item.hSubMenu = below.Get();
    }
    if (!InsertMenuItemW(menu, position, TRUE, &item)) throw SystemError("InsertMenuItem", GetLastError());
    // From here on it goes with the menu above it.
    static_cast<void>(below.Release());
}

OwnedMenu MakeMenu(const std::vector<MenuRow>& rows) {
    OwnedMenu menu(CreatePopupMenu());
    if (!menu) throw SystemError("CreatePopupMenu", GetLastError());
    UINT position = 0;
    for (const MenuRow& row : rows) Append(menu.Get(), row, position++);
    return menu;
}

}  // namespace

std::int32_t TrackPopup(HWND owner, const std::vector<MenuRow>& rows, std::uint32_t flags) {
    const OwnedMenu menu = MakeMenu(rows);
    POINT mouse{};
    GetCursorPos(&mouse);
    const int chosen = TrackPopupMenu(menu.Get(), flags | TPM_RETURNCMD, mouse.x, mouse.y, 0, owner, nullptr);
    // Without a message behind it the next menu of a hidden owner would close at once.
    PostMessageW(owner, WM_NULL, 0, 0);
    return chosen;
}

}  // namespace tb
