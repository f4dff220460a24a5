#include "ui/window/Picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "base/bytes.h"

namespace tb {

namespace {

constexpr std::int32_t LongestSide = 4096;
constexpr std::int64_t MostPixels = 4'000'000;
// The image of an icon file that is wanted.
constexpr std::int32_t IconSide = 32;

std::int32_t Number(TextView bytes, size_t at, size_t length) {
    if (bytes.size() < at + length) return 0;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(LittleEndian(bytes.substr(at, length))));
}

std::int32_t BigEndian16(TextView bytes, size_t at) {
    return static_cast<unsigned char>(bytes[at]) << 8 | static_cast<unsigned char>(bytes[at + 1]);
}

PictureHeader BmpHeader(TextView bytes) {
    constexpr std::int32_t OldHeader = 12;
    if (Number(bytes, 14, 4) == OldHeader) return {PictureKind::Bmp, {Number(bytes, 18, 2), Number(bytes, 20, 2)}};
    // A negative height tells that the rows begin at the top.
    const std::int32_t height = Number(bytes, 22, 4);
    return {PictureKind::Bmp, {Number(bytes, 18, 4), height == INT32_MIN ? 0 : std::abs(height)}};
}

PictureHeader IconHeader(TextView bytes) {
    constexpr size_t Directory = 6;
    constexpr size_t Entry = 16;
    PictureHeader header{PictureKind::Icon, {}};
    const auto count = static_cast<size_t>(Number(bytes, 4, 2));
    for (size_t index = 0; index < count && bytes.size() >= Directory + (index + 1) * Entry; ++index) {
        // 0 stands for 256.
        const auto side = [&](size_t at) {
            const std::int32_t given = Number(bytes, Directory + index * Entry + at, 1);
            return given == 0 ? 256 : given;
        };
        const PixelSize size{side(0), side(1)};
        if (header.Size.Width == 0 || std::abs(size.Width - IconSide) < std::abs(header.Size.Width - IconSide)) {
            header.Size = size;
        }
    }
    return header;
}

// Of the first frame: marker segments follow each other until one describes it.
PictureHeader JpegHeader(TextView bytes) {
    constexpr std::array<int, 3> NotFrames = {0xC4, 0xC8, 0xCC};
    size_t at = 2;
    while (at + 9 <= bytes.size() && bytes[at] == '\xFF') {
        const int marker = static_cast<unsigned char>(bytes[at + 1]);
        const bool isFrame = marker >= 0xC0 && marker <= 0xCF &&
                             std::find(NotFrames.begin(), NotFrames.end(), marker) == NotFrames.end();
        if (isFrame) return {PictureKind::Jpeg, {BigEndian16(bytes, at + 7), BigEndian16(bytes, at + 5)}};
        at += 2 + static_cast<size_t>(BigEndian16(bytes, at + 2));
    }
    return {PictureKind::Jpeg, {}};
}

// The size is that of the whole picture; one whose first frame goes beyond that has none: decoders make room for the
// frame.
PictureHeader GifHeader(TextView bytes) {
    constexpr size_t Screen = 13;
    constexpr std::int32_t HasColors = 0x80;
    const PixelSize size{Number(bytes, 6, 2), Number(bytes, 8, 2)};
    const std::int32_t flags = Number(bytes, 10, 1);
    size_t at = Screen + ((flags & HasColors) != 0 ? size_t{3} << ((flags & 7) + 1) : 0);
    // Extensions: two bytes, then blocks behind their length until an empty one.
    while (at < bytes.size() && bytes[at] == '!') {
        at += 2;
        while (at < bytes.size() && bytes[at] != '\0') at += 1 + static_cast<unsigned char>(bytes[at]);
        ++at;
    }
    const bool isFrame = at + 9 < bytes.size() && bytes[at] == ',';
    const bool fits = isFrame && Number(bytes, at + 1, 2) + Number(bytes, at + 5, 2) <= size.Width &&
                      Number(bytes, at + 3, 2) + Number(bytes, at + 7, 2) <= size.Height;
    return {PictureKind::Gif, fits ? size : PixelSize()};
}

PictureHeader HeaderOf(TextView bytes) {
    if (bytes.starts_with("BM")) return BmpHeader(bytes);
    if (bytes.starts_with("GIF87a") || bytes.starts_with("GIF89a")) return GifHeader(bytes);
    if (bytes.starts_with("\xFF\xD8")) return JpegHeader(bytes);
    if (bytes.starts_with(TextView("\0\0\1\0", 4))) return IconHeader(bytes);
    return {};
}

// Adds up pixels by their weight; colours count as much as they are seen.
class Mixture {
public:
    void Add(std::uint32_t pixel, double weight) {
        const double seen = weight * (pixel >> 24);
        m_Alpha += seen;
        for (size_t channel = 0; channel < m_Sums.size(); ++channel) {
            m_Sums[channel] += seen * (pixel >> (8 * channel) & 0xFF);
        }
    }
    std::uint32_t Pixel() const {
        if (m_Alpha <= 0) return 0;
        std::uint32_t pixel = Rounded(m_Alpha) << 24;
        for (size_t channel = 0; channel < m_Sums.size(); ++channel) {
            pixel |= Rounded(m_Sums[channel] / m_Alpha) << (8 * channel);
        }
        return pixel;
    }

private:
    static std::uint32_t Rounded(double value) {
        return static_cast<std::uint32_t>(std::lround(std::min(value, 255.0)));
    }

    double m_Alpha = 0;
    std::array<double, 3> m_Sums{};
};

// Which two of the old pixels a new one lies between, and how near to the second.
struct Between {
    std::int32_t First;
    std::int32_t Second;
    double Part;
};

Between Source(std::int32_t at, std::int32_t newSide, std::int32_t oldSide) {
    const double place = std::clamp((at + 0.5) * oldSide / newSide - 0.5, 0.0, oldSide - 1.0);
    const auto first = static_cast<std::int32_t>(place);
    return {first, std::min(first + 1, oldSide - 1), place - first};
}

}  // namespace

std::optional<PictureHeader> ReadPictureHeader(TextView bytes) {
    const PictureHeader header = HeaderOf(bytes);
    const auto [width, height] = header.Size;
    const bool fits = width > 0 && height > 0 && width <= LongestSide && height <= LongestSide &&
                      std::int64_t{width} * height <= MostPixels;
    return fits ? std::optional(header) : std::nullopt;
}

PictureRef ScalePicture(const PictureRef& picture, PixelSize size) {
    if (!picture || picture->Pixels.empty() || size.Width <= 0 || size.Height <= 0) return nullptr;
    if (size == picture->Size) return picture;
    auto scaled = std::make_shared<Picture>(Picture{picture->Bytes, picture->Kind, size, {}});
    scaled->Pixels.reserve(static_cast<size_t>(size.Width) * static_cast<size_t>(size.Height));
    const auto pixel = [&](std::int32_t x, std::int32_t y) {
        return picture
            ->Pixels[static_cast<size_t>(y) * static_cast<size_t>(picture->Size.Width) + static_cast<size_t>(x)];
    };
    for (std::int32_t y = 0; y < size.Height; ++y) {
        const Between rows = Source(y, size.Height, picture->Size.Height);
        for (std::int32_t x = 0; x < size.Width; ++x) {
            const Between columns = Source(x, size.Width, picture->Size.Width);
            Mixture mixture;
            mixture.Add(pixel(columns.First, rows.First), (1 - columns.Part) * (1 - rows.Part));
            mixture.Add(pixel(columns.Second, rows.First), columns.Part * (1 - rows.Part));
            mixture.Add(pixel(columns.First, rows.Second), (1 - columns.Part) * rows.Part);
            mixture.Add(pixel(columns.Second, rows.Second), columns.Part * rows.Part);
            scaled->Pixels.push_back(mixture.Pixel());
        }
    }
    return scaled;
}

}  // namespace tb
