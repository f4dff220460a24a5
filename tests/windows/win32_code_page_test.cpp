// Code pages as the system knows them.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>

#include "base/win32/SystemCodePage.h"

namespace tb {
namespace {

TEST(SystemCodePage, IsReadAsItIs) {
    const std::optional<CodePage> western = ReadCodePage(1252);
    ASSERT_TRUE(western);
    for (size_t code = 0; code < 256; ++code) {
        EXPECT_EQ(western->Wide[code], Windows1252.Wide[code]) << code;
        EXPECT_EQ(western->Lower[code], Windows1252.Lower[code]) << code;
        EXPECT_EQ(western->Upper[code], Windows1252.Upper[code]) << code;
    }
    const std::optional<CodePage> cyrillic = ReadCodePage(1251);
    ASSERT_TRUE(cyrillic);
    for (const auto& [large, small] : std::vector<std::pair<int, int>>{
             {0xC0, 0xE0}, {0xD7, 0xF7}, {0xDF, 0xFF}, {0xA8, 0xB8}, {0x8A, 0x9A}, {0x80, 0x90}, {'A', 'a'}}) {
        EXPECT_EQ(cyrillic->Lower[static_cast<size_t>(large)], static_cast<char>(small)) << large;
        EXPECT_EQ(cyrillic->Upper[static_cast<size_t>(small)], static_cast<char>(large)) << small;
    }
    EXPECT_EQ(cyrillic->Wide[0xC6], u'\u0416');
    // No letter leaves its half: dotless and dotted i have their other case in ASCII.
    const std::optional<CodePage> turkish = ReadCodePage(1254);
    ASSERT_TRUE(turkish);
    EXPECT_EQ(turkish->Lower[0xDD], '\xDD');
    EXPECT_EQ(turkish->Upper[0xFD], '\xFD');
    EXPECT_EQ(turkish->Lower['I'], 'i');
    for (const std::uint32_t wider : {932U, 936U, 65001U, 12345U}) EXPECT_FALSE(ReadCodePage(wider)) << wider;
}

// As the narrow functions of the system read and fold bytes, on whatever system this runs; see the CMakeLists.txt.
TEST(SystemCodePage, IsInUse) {
    const char* const due = std::getenv("TRAWLBEAM_TEST_ACP");
    ASSERT_EQ(GetACP(), due == nullptr ? 1252U : static_cast<UINT>(std::stoul(due)));
    if (GetACP() == CP_UTF8) {
        EXPECT_EQ(CodePage::InUse().Number, 1252U);
        return;
    }
    EXPECT_EQ(CodePage::InUse().Number, GetACP());
    for (int code = 1; code < 256; ++code) {
        const Text byte(1, static_cast<char>(code));
        wchar_t wide = 0;
        ASSERT_EQ(MultiByteToWideChar(CP_ACP, 0, byte.data(), 1, &wide, 1), 1);
        EXPECT_EQ(ToWide(byte), std::u16string(1, static_cast<char16_t>(wide))) << code;
        EXPECT_EQ(FromWide(ToWide(byte)), byte) << code;
        Text lower = byte;
        Text upper = byte;
        CharLowerBuffA(lower.data(), 1);
        CharUpperBuffA(upper.data(), 1);
        EXPECT_EQ(LowerCase(byte), lower) << code;
        EXPECT_EQ(UpperCase(byte), upper) << code;
    }
}

}  // namespace
}  // namespace tb
