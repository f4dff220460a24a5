#include "sitedb/HashTable.h"

#include <gtest/gtest.h>

#include "fakes/Raised.h"

namespace tb {
namespace {

TEST(HashOfKey, XorsLittleEndianWords) {
    for (const char* key : {"abcdefgh", "efghabcd", "12345678"}) EXPECT_EQ(HashSlots::HashOfKey(key), 201589764);
    EXPECT_EQ(HashSlots::HashOfKey("abcde"), 1684234756);
    EXPECT_EQ(HashSlots::HashOfKey("abc\x80"), -2140970399);
    EXPECT_EQ(HashSlots::HashOfKey("\xFF"), 255);
}

TEST(HashTable, RaisesWhereTheTermsAreBroken) {
    HashTable<int> table;
    EXPECT_EQ(Raised([&] { table.Item("", 1); }), 1001);
    EXPECT_EQ(Raised([&] { table.Add("abc\x80", 1); }), 9);
    EXPECT_EQ(Raised([&] { table.Remove("absent"); }), 5);
    EXPECT_EQ(Raised([&] { table.Values(); }), 9);
    // A negative hash that leaves no remainder lands in bucket 0.
    table.Add("aaaaaaaa", 8);
    table.Add(Text("\0\x04\0\x80", 4), 7);
    EXPECT_EQ(table.Values(), (std::vector<int>{8, 7}));
    EXPECT_EQ(Raised([&] { table.Add("aaaaaaaa", 9); }), 457);
    EXPECT_EQ(table.Item("aaaaaaaa"), 8);
    EXPECT_EQ(Raised([&] { table.IgnoreCase(true); }), 1001);
}

}  // namespace
}  // namespace tb
