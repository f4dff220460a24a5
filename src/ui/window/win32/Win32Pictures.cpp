#include "ui/window/win32/Win32Pictures.h"

// After windows.h, which the headers below include.
#include "platform/win32/ComPointer.h"
#include "platform/win32/Handle.h"
#include "ui/window/win32/Win32Icon.h"
#include "ui/window/win32/pcMemDC.h"

#include <olectl.h>

#include <algorithm>
#include <functional>

#include "base/errors.h"

namespace tb {

namespace {

constexpr int UsualDpi = 96;
// What is drawn on black and on white by the same call.
using Drawing = std::function<void(HDC)>;

std::uint32_t Channel(std::uint32_t pixel, int shift) { return pixel >> shift & 0xFF; }

// A pixel by what black and white look like behind it: the less they differ, the more is seen of it.
std::uint32_t PixelBetween(std::uint32_t onBlack, std::uint32_t onWhite) {
    const std::uint32_t difference = Channel(onWhite, 8) - std::min(Channel(onWhite, 8), Channel(onBlack, 8));
    const std::uint32_t alpha = 255 - difference;
    if (alpha == 0) return 0;
    std::uint32_t pixel = alpha << 24;
    for (const int shift : {0, 8, 16}) {
        pixel |= std::min<std::uint32_t>((Channel(onBlack, shift) * 255 + alpha / 2) / alpha, 255) << shift;
    }
    return pixel;
}

// System memory for the whole time is four times the pixels; the header has bounded them.
std::vector<std::uint32_t> PixelsOf(PixelSize size, const Drawing& draw) {
    const PixelDC black(size.Width, size.Height);
    const PixelDC white(size.Width, size.Height);
    if (black.Pixels() == nullptr || white.Pixels() == nullptr) return {};
    const size_t count = static_cast<size_t>(size.Width) * static_cast<size_t>(size.Height);
    std::fill_n(white.Pixels(), count, 0x00FFFFFFU);
    draw(black.hDC());
    draw(white.hDC());
    std::vector<std::uint32_t> pixels(count);
    std::transform(black.Pixels(), black.Pixels() + count, white.Pixels(), pixels.begin(), PixelBetween);
    return pixels;
}

ComPointer<IPicture> LoadPictureFile(const Text& bytes) {
    ComPointer<IPicture> picture;
    ComPointer<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()))) return picture;
    const auto length = static_cast<ULONG>(bytes.size());
    if (FAILED(stream->Write(bytes.data(), length, nullptr)) || FAILED(stream->Seek({}, STREAM_SEEK_SET, nullptr))) {
        return picture;
    }
    // False keeps the file beside the picture; with True there are systems that never free the bitmap.
    OleLoadPicture(stream.Get(), static_cast<LONG>(length), FALSE, __uuidof(IPicture),
                   reinterpret_cast<void**>(picture.Receive()));
    return picture;
}

// Nothing where the file is damaged. Its size is what was decoded, which the header does not bind.
void DecodeBitmap(const Text& bytes, Picture& decoded) {
    const ComPointer<IPicture> picture = LoadPictureFile(bytes);
    SHORT kind = PICTYPE_NONE;
    OLE_HANDLE handle = 0;
    BITMAP bitmap{};
    if (!picture || FAILED(picture->get_Type(&kind)) || kind != PICTYPE_BITMAP ||
        FAILED(picture->get_Handle(&handle))) {
        return;
    }
    const auto object = reinterpret_cast<HGDIOBJ>(static_cast<INT_PTR>(static_cast<std::int32_t>(handle)));
    if (GetObjectW(object, sizeof bitmap, &bitmap) == 0) return;
    const PixelSize size{static_cast<std::int32_t>(bitmap.bmWidth), static_cast<std::int32_t>(bitmap.bmHeight)};
    if (size != decoded.Size) return;
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    picture->get_Width(&width);
    picture->get_Height(&height);
    decoded.Pixels = PixelsOf(size, [&](HDC context) {
        picture->Render(context, 0, 0, size.Width, size.Height, 0, height, width, -height, nullptr);
    });
}

void DecodeIcon(const Text& bytes, Picture& decoded) {
    const auto [width, height] = decoded.Size;
    const OwnedIcon icon = IconOfFile(bytes, {width, height});
    if (!icon) return;
    decoded.Pixels = PixelsOf(decoded.Size, [&, width = width, height = height](HDC context) {
        DrawIconEx(context, 0, 0, icon.Get(), width, height, 0, nullptr, DI_NORMAL);
    });
}

PictureRef Decode(const Text& bytes, int dotsPerInch) {
    const std::optional<PictureHeader> header = ReadPictureHeader(bytes);
    if (!header) return nullptr;
    auto decoded = std::make_shared<Picture>(Picture{bytes, header->Kind, header->Size, {}});
    if (header->Kind == PictureKind::Icon) {
        DecodeIcon(bytes, *decoded);
    } else {
        DecodeBitmap(bytes, *decoded);
    }
    if (decoded->Pixels.empty()) return nullptr;
    const auto scaled = [&](std::int32_t side) { return std::max(MulDiv(side, dotsPerInch, UsualDpi), 1); };
    return ScalePicture(decoded, {scaled(header->Size.Width), scaled(header->Size.Height)});
}

}  // namespace

PictureRef DecodePicture(const Text& bytes, int dotsPerInch) noexcept {
    return TrapOr(
        PictureRef(), [&] { return Decode(bytes, dotsPerInch); },
        [](const RuntimeError&) { /* without memory for it there is no picture */ });
}

}  // namespace tb
