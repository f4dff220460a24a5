// An icon of a window.
#pragma once

#include "platform/win32/Handle.h"
#include "ui/window/Picture.h"

namespace tb {

// The image of an icon file whose width is nearest to that of `size`, stretched to it; none when the file has no image
// that can be read.
OwnedIcon IconOfFile(TextView file, PixelSize size);

class Win32Icon {
public:
    Win32Icon() = default;
    // The image of the icon file that is nearest to `size` pixels; without a picture, or when that is no icon file, the
    // program's own icon.
    Win32Icon(const PictureRef& picture, int size);

    HICON Get() const { return m_Owned ? m_Owned.Get() : m_Shared; }

private:
    OwnedIcon m_Owned;
    // The system's to keep.
    HICON m_Shared = nullptr;
};

}  // namespace tb
