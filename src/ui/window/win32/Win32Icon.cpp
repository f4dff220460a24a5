#include "ui/window/win32/Win32Icon.h"

#include <cstdlib>

#include "base/bytes.h"
#include "platform/win32/Module.h"

namespace tb {

namespace {

// An icon file: 0, 1 and the number of images, 16 bits each; then 16 bytes an image: width and height (0 for 256), ...,
// length and place of its bytes, 32 bits each.
constexpr size_t HeaderSize = 6;
constexpr size_t EntrySize = 16;
constexpr DWORD IconVersion = 0x00030000;
constexpr int OwnIconResource = 1;

// The bytes of the image whose width is nearest to `size`; empty when there is none that lies in the file.
TextView NearestImage(TextView file, int size) {
    TextView nearest;
    int smallest = 0;
    if (file.size() < HeaderSize || LittleEndian(file.substr(0, 4)) != 0x00010000U) return nearest;
    const size_t count = LittleEndian(file.substr(4, 2));
    for (size_t index = 0; index < count && HeaderSize + (index + 1) * EntrySize <= file.size(); ++index) {
        const size_t entry = HeaderSize + index * EntrySize;
        const size_t length = LittleEndian(file.substr(entry + 8, 4));
        const size_t place = LittleEndian(file.substr(entry + 12, 4));
        if (length == 0 || place > file.size() || length > file.size() - place) continue;
        const int width = file[entry] == 0 ? 256 : static_cast<unsigned char>(file[entry]);
        const int distance = std::abs(width - size);
        if (!nearest.empty() && distance >= smallest) continue;
        nearest = file.substr(place, length);
        smallest = distance;
    }
    return nearest;
}

HICON OwnIcon(int size) {
    const HANDLE icon = LoadImageW(OwnModule(), MAKEINTRESOURCEW(OwnIconResource), IMAGE_ICON, size, size, LR_SHARED);
    return icon != nullptr ? static_cast<HICON>(icon)
                           : LoadIconW(nullptr, reinterpret_cast<const wchar_t*>(IDI_APPLICATION));
}

}  // namespace

OwnedIcon IconOfFile(TextView file, PixelSize size) {
    Text image(NearestImage(file, size.Width));
    if (image.empty()) return {};
    return OwnedIcon(CreateIconFromResourceEx(reinterpret_cast<PBYTE>(image.data()), static_cast<DWORD>(image.size()),
                                              TRUE, IconVersion, size.Width, size.Height, 0));
}

Win32Icon::Win32Icon(const PictureRef& picture, int size) {
    if (picture) m_Owned = IconOfFile(picture->Bytes, {size, size});
    if (!m_Owned) m_Shared = OwnIcon(size);
}

}  // namespace tb
