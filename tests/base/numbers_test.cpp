#include "base/numbers.h"

#include <gtest/gtest.h>

#include <limits>

#include "fakes/Raised.h"

namespace tb {
namespace {

TEST(Numbers, RoundHalvesToEven) {
    EXPECT_EQ(RoundToInt32(0.5), 0);
    EXPECT_EQ(RoundToInt32(1.5), 2);
    EXPECT_EQ(RoundToInt32(2.5), 2);
    EXPECT_EQ(RoundToInt32(12.5), 12);
    EXPECT_EQ(RoundToInt32(37.5), 38);
    EXPECT_EQ(RoundToInt32(-1.5), -2);
    EXPECT_EQ(Raised([] { RoundToInt32(2147483648.0); }), 6);
    EXPECT_EQ(Raised([] { RoundToInt32(std::numeric_limits<double>::quiet_NaN()); }), 6);
}

TEST(Numbers, TextsReadAsNumbersOrRaise) {
    EXPECT_EQ(ToInt32(" -2147483648\r\n"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ToInt16("+32767"), 32767);
    EXPECT_EQ(ToInt16("12.5"), 12);
    EXPECT_EQ(ToDouble("1.0"), 1.0);
    EXPECT_EQ(ToDouble(".5"), 0.5);
    EXPECT_EQ(ToDouble("-2e3"), -2000.0);
    for (const char* text :
         {"", " ", "60Days", "34-56", "abc", "+-1", "--1", "0x10", "1,5", ".", "inf", "nan", "1 2"}) {
        EXPECT_EQ(Raised([&] { ToInt16(text); }), 13) << text;
    }
    EXPECT_EQ(Raised([] { ToInt16("32768"); }), 6);
    EXPECT_EQ(Raised([] { ToInt32("2147483648"); }), 6);
    EXPECT_EQ(Raised([] { ToDouble("1e999"); }), 6);
}

TEST(Numbers, NarrowingNeverWraps) {
    EXPECT_EQ(NarrowToInt16(-32768), -32768);
    EXPECT_EQ(Raised([] { NarrowToInt16(32768); }), 6);
    EXPECT_EQ(Raised([] { NarrowToInt32(std::int64_t{1} << 32); }), 6);
}

TEST(Numbers, Texts) {
    EXPECT_EQ(ToText(true) + ToText(false), "TrueFalse");
    EXPECT_EQ(ToHex(0), "0");
    EXPECT_EQ(ToHex(0xE05D448), "E05D448");
    EXPECT_EQ(ToHex(9, 2), "09");
    EXPECT_EQ(ToHex(0x1234, 8), "00001234");
}

TEST(Numbers, ScorePictureKeepsABarePoint) {
    EXPECT_EQ(FormatScore(2), "2.");
    EXPECT_EQ(FormatScore(10), "10.");
    EXPECT_EQ(FormatScore(0), ".");
    EXPECT_EQ(FormatScore(0.5), ".5");
    EXPECT_EQ(FormatScore(123.456), "123.46");
    EXPECT_EQ(FormatScore(-0.001), ".");
    EXPECT_EQ(FormatScore(-1.25), "-1.25");
}

}  // namespace
}  // namespace tb
