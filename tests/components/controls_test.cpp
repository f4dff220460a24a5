// The tab strip and the list control without their windows.
#include <gtest/gtest.h>

#include "components/MBListEx/ListRows.h"
#include "components/tbDTab6/TabList.h"
#include "fakes/Raised.h"

namespace tb {
namespace {

TEST(TabList, KeepsTheSelectionWithItsTab) {
    TabList tabs;
    EXPECT_EQ(tabs.Selected(), TabList::NoTab);
    for (const char* key : {"a", "b", "c", "d"}) tabs.Add({key, key});
    EXPECT_EQ(tabs.Selected(), 0) << "the first one";
    EXPECT_EQ(Raised([&] { tabs.Add({"B", "again"}); }), 457);
    tabs.Add({"", "without key"});
    tabs.Add({"", "another"});
    tabs.Select(tabs.Find("C"));
    // c is selected among a b c d and two without a key; it goes in the third step.
    const std::pair<int, int> steps[] = {{0, 1}, {3, 1}, {1, 1}, {1, 1}, {1, 0}, {0, TabList::NoTab}};
    for (const auto& [removed, selected] : steps) {
        tabs.Remove(removed);
        EXPECT_EQ(tabs.Selected(), selected) << tabs.Count() << " left";
    }
    EXPECT_EQ(Raised([&] { tabs.Remove(0); }), 9);
    EXPECT_EQ(Raised([&] { tabs.Select(-1); }), 9);
}

ListRows Column(const std::vector<Text>& cells) {
    ListRows rows;
    rows.AddColumn();
    rows.AddColumn();
    for (const Text& cell : cells) {
        const std::int32_t row = rows.Add();
        rows.Set(row, 0, cell);
        rows.Set(row, 1, std::to_string(row));
    }
    return rows;
}

Text Cells(const ListRows& rows, std::int32_t column) {
    Text cells;
    for (std::int32_t row = 0; row < rows.Count(); ++row) cells += rows.Get(row, column) + '|';
    return cells;
}

TEST(ListRows, AreSortedByTextOrNumberWithTheSelectionInPlace) {
    struct Case {
        ListOrder Order;
        bool Descending;
        Text Sorted;
        Text Origins;
    };
    const Case cases[] = {
        {ListOrder::ByText, false, "|10|9|B|b|\xc9|", "3|1|0|2|5|4|"},
        {ListOrder::ByText, true, "\xc9|B|b|9|10||", "4|2|5|0|1|3|"},
        {ListOrder::ByNumber, false, "9|10||B|b|\xc9|", "0|1|3|2|5|4|"},
        {ListOrder::ByNumber, true, "\xc9|B|b||10|9|", "4|2|5|3|1|0|"},
    };
    for (const Case& tried : cases) {
        ListRows rows = Column({"9", "10", "B", "", "\xc9", "b"});
        rows.Select(2);
        rows.Sort(0, tried.Order, tried.Descending);
        EXPECT_EQ(Cells(rows, 0), tried.Sorted);
        EXPECT_EQ(Cells(rows, 1), tried.Origins) << "rows move whole, equal ones keep their order";
        EXPECT_EQ(rows.Get(rows.Selected(), 1), "2");
    }
}

TEST(ListRows, KeepTheSelectionWithItsRow) {
    ListRows rows = Column({"a", "b", "c"});
    rows.Select(1);
    rows.Remove(0);
    EXPECT_EQ(rows.Selected(), 0);
    EXPECT_EQ(rows.Find(0, "C"), 1);
    EXPECT_EQ(rows.Find(0, "a"), ListRows::NoRow);
    rows.Remove(0);
    EXPECT_EQ(rows.Selected(), ListRows::NoRow);
    EXPECT_EQ(rows.Get(rows.Add(), 1), "") << "an empty row has all its cells";
    EXPECT_EQ(Raised([&] { rows.Get(0, 2); }), 9);
    EXPECT_EQ(Raised([&] { rows.Set(-1, 0, ""); }), 9);
    EXPECT_EQ(Raised([&] { rows.Select(2); }), 9);
}

}  // namespace
}  // namespace tb
