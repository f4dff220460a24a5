#include "base/text.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "fakes/AnotherCodePage.h"

namespace tb {
namespace {

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
