#include "ui/window/Picture.h"

#include <gtest/gtest.h>

#include "ui/window/ButtonLook.h"

namespace tb {
namespace {

// The first bytes of files that say "width x height".
Text Bmp(char width, char height) {
    return Text("BM", 2) + Text(12, '\0') + Text("\x28\0\0\0", 4) + Text(1, width) + Text(3, '\0') + Text(1, height) +
           Text(3, height < 0 ? '\xFF' : '\0');
}

// With an extension before the only frame.
Text Gif(const Text& size, const Text& frame) {
    return "GIF89a" + size + Text("\x80\0\0", 3) + Text(6, 'c') + Text("!\xF9\4abcd\0,\0\0\0\0", 13) + frame +
           Text(3, '\0');
}

TEST(PictureHeaders, TellKindAndSizeOfWhatMayBeDecoded) {
    const Text jpeg("\xFF\xD8\xFF\xE0\0\4ab\xFF\xC4\0\2\xFF\xC2\0\x0B\x08\0\x10\0\x20\1\1\x11\0", 25);
    const Text icon(
        "\0\0\1\0\2\0"
        "\0\0\0\0\1\0\x20\0\1\0\0\0\x26\0\0\0"
        "\x20\x20\0\0\1\0\x20\0\1\0\0\0\x26\0\0\0",
        38);
    const std::tuple<const char*, Text, PictureKind, PixelSize> files[] = {
        {"bmp", Bmp(18, 28), PictureKind::Bmp, {18, 28}},
        {"bmp from the top", Bmp(18, -28), PictureKind::Bmp, {18, 28}},
        {"gif", Gif(Text("\x20\3\x1C\0", 4), Text("\x20\3\x1C\0", 4)), PictureKind::Gif, {800, 28}},
        {"jpeg", jpeg, PictureKind::Jpeg, {32, 16}},
        {"icon", icon, PictureKind::Icon, {32, 32}}};
    for (const auto& [name, bytes, kind, size] : files) {
        const auto header = ReadPictureHeader(bytes);
        ASSERT_TRUE(header) << name;
        EXPECT_EQ(header->Kind, kind) << name;
        EXPECT_EQ(header->Size, size) << name;
    }
    const Text refused[] = {"",
                            "BM",
                            "\x89PNG\r\n\x1A\n",
                            Text("GIF89a\0\0\1\0", 10),
                            Text("GIF89a\1\x10\1\0", 10),
                            Gif("\xFF\x0F\xFF\x0F", "\1\1\1\1"),
                            Gif("\1\1\1\1", "\1\1\2\1"),
                            Gif("\1\1\1\1", "\1\1\1\1").substr(0, 30),
                            Text("\xFF\xD8\xFF\xE0\0\0", 6),
                            Bmp(18, 0)};
    for (const Text& bytes : refused) EXPECT_FALSE(ReadPictureHeader(bytes)) << bytes;
}

TEST(ScaledPictures, MixColoursByWhatIsSeenOfThem) {
    const auto two = std::make_shared<Picture>(Picture{"file", PictureKind::Gif, {2, 1}, {0xFF0000FF, 0x0012FF34}});
    const PictureRef four = ScalePicture(two, {4, 2});
    ASSERT_TRUE(four);
    EXPECT_EQ(four->Size, (PixelSize{4, 2}));
    const std::vector<std::uint32_t> row{0xFF0000FF, 0xBF0000FF, 0x400000FF, 0x00000000};
    std::vector<std::uint32_t> expected = row;
    expected.insert(expected.end(), row.begin(), row.end());
    EXPECT_EQ(four->Pixels, expected);
    EXPECT_EQ(ScalePicture(two, {2, 1}), two);
    EXPECT_EQ(ScalePicture(two, {0, 1}), nullptr);
}

// On a light and on a dark ground, a text can be read on each face; where a skin gives a text that cannot be seen, too.
TEST(Buttons, CanBeReadInEachState) {
    const ControlColors grounds[] = {{0xFBF9F7, 0x403226}, {0x402010, 0xF0F0F0}, {0x808080, 0x808080}};
    for (const ControlColors& colors : grounds) {
        for (int bits = 0; bits < 16; ++bits) {
            const ButtonLook look =
                LookOfButton(colors, {true, (bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0});
            EXPECT_GE(Contrast(look.Face, look.Text), 4.5) << bits << " on " << colors.Back.Bits();
        }
        const ButtonLook plain = LookOfButton(colors, {});
        const ButtonLook disabled = LookOfButton(colors, {false});
        if (colors.Back == colors.Fore) continue;
        EXPECT_LT(Contrast(disabled.Face, disabled.Text), 4.5) << "looks enabled";
        EXPECT_NE(plain.Face, LookOfButton(colors, {true, true}).Face);
        EXPECT_NE(plain.Border, LookOfButton(colors, {true, false, false, true}).Border);
    }
    EXPECT_NEAR(Contrast(0xFFFFFF, 0), 21, 0.01);
}

}  // namespace
}  // namespace tb
