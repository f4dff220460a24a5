#include "sitedb/HashTable.h"

#include <gtest/gtest.h>

#include "fakes/Raised.h"

namespace tb {
namespace {

TEST(HashOfKey, XorsLittleEndianWords) {
    EXPECT_EQ(HashSlots::HashOfKey("abcd"), 1684234849);
    for (const char* key : {"abcdefgh", "efghabcd", "12345678"}) EXPECT_EQ(HashSlots::HashOfKey(key), 201589764);
    EXPECT_EQ(HashSlots::HashOfKey("a"), 97);
    EXPECT_EQ(HashSlots::HashOfKey("abcde"), 1684234756);
    EXPECT_EQ(HashSlots::HashOfKey("evil.example"), 1753047846);
    EXPECT_EQ(HashSlots::HashOfKey("abc\x80"), -2140970399);
    EXPECT_EQ(HashSlots::HashOfKey("\xFF"), 255);
}

TEST(HashTable, RaisesWhereTheTermsAreBroken) {
    HashTable<int> table;
    EXPECT_EQ(Raised([&] { table.Exists(""); }), 1001);
    EXPECT_EQ(Raised([&] { table.Item("", 1); }), 1001);
    EXPECT_EQ(Raised([&] { table.Exists("abc\x80"); }), 9);
    EXPECT_EQ(Raised([&] { table.Add("abc\x80", 1); }), 9);
    EXPECT_EQ(table.Count(), 0);
    EXPECT_EQ(Raised([&] { table.Remove("absent"); }), 5);
    EXPECT_TRUE(table.Keys().empty());
    EXPECT_EQ(Raised([&] { table.Values(); }), 9);
    // A negative hash that leaves no remainder lands in bucket 0.
    const Text negative("\0\x04\0\x80", 4);
    table.Add(negative, 7);
    table.Add("aaaaaaaa", 8);
    EXPECT_EQ(table.Keys(), (std::vector<Text>{negative, "aaaaaaaa"}));
    EXPECT_EQ(Raised([&] { table.Add("aaaaaaaa", 9); }), 457);
    EXPECT_EQ(table.Item("aaaaaaaa"), 8);
    try {
        table.IgnoreCase(true);
        FAIL();
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Line(), "1001 The Hash Table isn't empty");
    }
    EXPECT_FALSE(table.IgnoreCase());
}

TEST(HashTable, CanIgnoreCase) {
    HashTable<Text> table;
    table.IgnoreCase(true);
    table.Item("AbCd\xE9", "w");
    table.Item("abcd\xE9", "x");
    EXPECT_EQ(table.Item("aBcD\xC9"), "x");
    EXPECT_EQ(table.Keys(), std::vector<Text>{"ABCD\xC9"});
    EXPECT_EQ(table.Item("absent"), "");
    EXPECT_EQ(table.Count(), 1);
    table.RemoveAll();
    table.RemoveAll();
    EXPECT_TRUE(table.IgnoreCase());
    EXPECT_FALSE(table.Exists("abcd\xE9"));
}

TEST(HashTable, GrowsBySlotsOf1024) {
    HashTable<int> table;
    EXPECT_EQ(table.SlotCount(), 2049U);
    for (int number = 1; number <= 3073; ++number) {
        const size_t expected = number <= 2049 ? 2049 : 3073;
        ASSERT_EQ(table.SlotCount(), expected) << number;
        table.Add("key" + std::to_string(number), number);
    }
    EXPECT_EQ(table.SlotCount(), 4097U);
    table.Remove("key7");
    const std::vector<Text> keys = table.Keys();
    const std::vector<int> values = table.Values();
    ASSERT_EQ(keys.size(), 3072U);
    for (size_t index = 0; index < keys.size(); ++index) ASSERT_EQ(keys[index], "key" + std::to_string(values[index]));
}

TEST(HashTable, ARemovedSlotIsTheNextToBeUsed) {
    HashSlots slots;
    slots.Create(KeyHash("a"));
    const std::int32_t second = slots.Create(KeyHash("b"));
    slots.Create(KeyHash("c"));
    slots.Remove(second, KeyHash("b"));
    EXPECT_EQ(slots.Create(KeyHash("d")), second);
}

}  // namespace
}  // namespace tb
