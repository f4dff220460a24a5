#include <gtest/gtest.h>

#include <limits>
#include <new>

#include "base/bytes.h"
#include "base/date.h"
#include "base/errors.h"
#include "base/event.h"
#include "base/numbers.h"
#include "base/text.h"
#include "fakes/AnotherCodePage.h"
#include "fakes/Raised.h"

namespace tb {
namespace {

TEST(Numbers, RoundHalvesToEven) {
    EXPECT_EQ(RoundToInt32(1.5), 2);
    EXPECT_EQ(RoundToInt32(2.5), 2);
    EXPECT_EQ(Raised([] { RoundToInt32(2147483648.0); }), 6);
    EXPECT_EQ(Raised([] { RoundToInt32(std::numeric_limits<double>::quiet_NaN()); }), 6);
}

TEST(Numbers, TextsReadAsNumbersOrRaise) {
    EXPECT_EQ(ToInt32(" -2147483648\r\n"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ToInt16("+32767"), 32767);
    EXPECT_EQ(ToInt16("12.5"), 12);
    EXPECT_EQ(ToDouble("-.2e3"), -200.0);
    for (const char* text :
         {"", " ", "60Days", "34-56", "abc", "+-1", "--1", "0x10", "1,5", ".", "inf", "nan", "1 2"}) {
        EXPECT_EQ(Raised([&] { ToInt16(text); }), 13) << text;
    }
    EXPECT_EQ(Raised([] { ToInt16("32768"); }), 6);
    EXPECT_EQ(Raised([] { ToInt32("2147483648"); }), 6);
    EXPECT_EQ(Raised([] { ToDouble("1e999"); }), 6);
}

TEST(Numbers, ScorePictureKeepsABarePoint) {
    EXPECT_EQ(FormatScore(10), "10.");
    EXPECT_EQ(FormatScore(-0.001), ".");
    EXPECT_EQ(FormatScore(-1.25), "-1.25");
}

TEST(Date, CalendarRoundTrips) {
    for (const char* text : {"01/01/1970 00:00:00", "02/29/2004 23:59:59", "12/31/1899 01:02:03", "02/29/2000 12:00:00",
                             "01/01/0100 00:00:00", "12/31/9999 23:59:59"}) {
        EXPECT_EQ(FormatDateTime(ParseDate(text)), text);
    }
    EXPECT_EQ(Date(CivilDate{2026, 11, 21, 3, 29, 7}).Seconds(), 1795231747);
    EXPECT_EQ(Date(CivilDate{1969, 12, 31, 23, 0, 0}).Day(), Date(CivilDate{1969, 12, 31}));
}

TEST(Date, MaskAndLocaleSeparators) {
    const Date date(CivilDate{2005, 3, 7, 4, 5, 6});
    EXPECT_EQ(FormatDateTime(date, {'.', '-'}), "03.07.2005 04-05-06");
    EXPECT_EQ(ParseDate("03.07.2005 04-05-06"), date);
    EXPECT_EQ(ParseDate("3/7/2005"), date.Day());
    EXPECT_EQ(ParseDate("03/07/2005 04:05"), date.PlusSeconds(-6));
}

TEST(Date, WhatIsNoDateRaisesTypeMismatch) {
    for (const char* text :
         {"", "1/2", "13/01/2005", "02/29/2005", "04/31/2005", "01/01/2005 24:00:00", "01/01/2005 23:60:00",
          "01/01/2005 23:59:60", "1/1/99", "01/01/2005 1:2:3:4", "01/01/20051", "00/10/2005"}) {
        EXPECT_EQ(Raised([&] { ParseDate(text); }), 13) << text;
    }
}

TEST(Errors, TrapCatchesWhateverIsThrown) {
    EXPECT_EQ(Raised([] { throw RuntimeError(1001, "Invalid key"); }), 1001);
    EXPECT_EQ(Raised([] { throw std::bad_alloc(); }), 7);
    EXPECT_EQ(Raised([] { throw 42; }), 51);
    const auto number = [](TextView text) {
        return TrapOr(
            -1, [&] { return ToInt32(text); }, [](const RuntimeError&) {});
    };
    EXPECT_EQ(number("5"), 5);
    EXPECT_EQ(number("five"), -1);
}

TEST(Bytes, AreNumbersWithTheLowestFirstAndPairsOfDigits) {
    const Text bytes = "\x01\x80\xFF\x7E";
    EXPECT_EQ(LittleEndian(bytes), 0x7EFF8001U);
    char back[] = "....!";
    PutLittleEndian(0x7EFF8001U, back, bytes.size());
    EXPECT_EQ(Text(back), bytes + "!");
    EXPECT_EQ(HexByte("9afx"), 0x9A);
    EXPECT_EQ(HexByte("Fe"), 0xFE);
    for (const char* none : {"", "1", "1g", "/0", "0:", "@1", "`1"}) EXPECT_EQ(HexByte(none), std::nullopt) << none;
}

TEST(Events, HandlersRunInOrderAndMayConnectMore) {
    Event<Text> event;
    Text heard;
    event.Connect([&](const Text& value) {
        heard += "a" + value;
        if (value == "1") event.Connect([&](const Text& later) { heard += "b" + later; });
    });
    event.Raise("1");
    event.Raise("2");
    EXPECT_EQ(heard, "a1a2b2");
}

using Parts = std::vector<Text>;

TEST(Text, SplitKeepsEmptyPartsButAnEmptyTextHasNone) {
    EXPECT_EQ(Split("", '/'), Parts());
    EXPECT_EQ(Split(Text("a\0\tb", 4), '\t'), (Parts{Text("a\0", 2), "b"}));
    EXPECT_EQ(Join(Split("a//b/", '/'), "/"), "a//b/");
    Parts reused{"of", "a", "text", "before", "it"};
    Split("a//b/", '/', reused);
    EXPECT_EQ(reused, (Parts{"a", "", "b", ""}));
}

TEST(Text, CaseFoldsEveryLetterOfTheCodePage) {
    EXPECT_EQ(LowerCase("AZ[\xC0\xDE\xD7\x8A\x8C\x8E\x9F"), "az[\xE0\xFE\xD7\x9A\x9C\x9E\xFF");
    EXPECT_EQ(UpperCase("az{\xE0\xFE\xF7\xDF\x9A\x9C\x9E\xFF\x83"), "AZ{\xC0\xDE\xF7\xDF\x8A\x8C\x8E\x9F\x83");
}

TEST(CodePage, ConvertsEveryByteThereAndBack) {
    Text all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    EXPECT_EQ(FromWide(ToWide(all)), all);
    EXPECT_EQ(ToWide("\x80\xE9"), u"\u20AC\u00E9");
    EXPECT_EQ(FromWide(u"a\u0416\u0100b"), "a??b");
    const AnotherCodePage page;
    EXPECT_EQ(LowerCase("A\xA8\xC0\xD7\xDF\x8A"), "a\xB8\xE0\xF7\xFF\x8A");
    EXPECT_EQ(FromWide(u"a\u0416\u0451\u00E9"), "a\xC6\xB8?");
    EXPECT_EQ(PathText(TextPath("\xC6\\x")), "\xC6\\x");
}

TEST(Text, MidCountsFromOneAndFailsOutsideItsTerms) {
    EXPECT_EQ(Mid("abc", 2, 1), "b");
    EXPECT_EQ(Mid("abc", 2, 99), "bc");
    EXPECT_EQ(Mid("abc", 4, 1), "");
    EXPECT_THROW(Mid("abc", 0, 1), RuntimeError);
    EXPECT_THROW(Mid("abc", 1, -1), RuntimeError);
}

TEST(Text, TrimsAndRemoves) {
    EXPECT_EQ(Trim(" \t\r\nx y \r\n"), "x y");
    EXPECT_EQ(Trim(" \t"), "");
    EXPECT_EQ(RemoveAll("a\r\nb\rc\r\n", "\r\n"), "ab\rc");
    EXPECT_EQ(WithoutTrailingSlashes("a//"), "a");
    EXPECT_EQ(WithoutTrailingSlashes("//"), "/");
}

TEST(Text, QuotedShowsNothingThatCouldForgeALine) {
    EXPECT_EQ(Quoted(" ~\x7F\r\n\x80\\"), " ~\\x7F\\x0D\\x0A\\x80\\x5C");
    EXPECT_EQ(Visible("\ta\r\n\r\x80"), "\ta\n\\x0D\\x80");
    EXPECT_EQ(Quoted("abcdef", 3), "abc...");
}

}  // namespace
}  // namespace tb
