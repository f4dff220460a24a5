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
    for (const char* key : {"a", "b", "c", "d", "", ""}) tabs.Add({key, "caption"});
    EXPECT_EQ(tabs.Selected(), 0) << "the first one";
    EXPECT_EQ(Raised([&] { tabs.Add({"B", "again"}); }), 457);
    tabs.Select(tabs.Find("C"));
    // It goes in the third step.
    const std::pair<int, int> steps[] = {{0, 1}, {3, 1}, {1, 1}, {1, 1}, {1, 0}, {0, TabList::NoTab}};
    for (const auto& [removed, selected] : steps) {
        tabs.Remove(removed);
        EXPECT_EQ(tabs.Selected(), selected) << tabs.Count() << " left";
    }
    EXPECT_EQ(Raised([&] { tabs.Remove(0); }), 9);
    EXPECT_EQ(Raised([&] { tabs.Select(-1); }), 9);
}

// Rows of a cell and the row's number.
ListRows Numbered(const std::vector<Text>& cells) {
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

TEST(ListRows, AreSortedByTextOrNumberWithTheSelectionInPlace) {
    const std::tuple<ListOrder, bool, Text> cases[] = {
        {ListOrder::ByText, false,
         "3|101|90|B2|b5|\xc9"
         "4|"},
        {ListOrder::ByText, true,
         "\xc9"
         "4|B2|b5|90|101|3|"},
        {ListOrder::ByNumber, false,
         "90|101|3|B2|b5|\xc9"
         "4|"},
        {ListOrder::ByNumber, true,
         "\xc9"
         "4|B2|b5|3|101|90|"},
    };
    for (const auto& [order, descending, sorted] : cases) {
        ListRows rows = Numbered({"9", "10", "B", "", "\xc9", "b"});
        rows.Select(2);
        rows.Sort(0, order, descending);
        Text cells;
        for (std::int32_t row = 0; row < rows.Count(); ++row) cells += rows.Get(row, 0) + rows.Get(row, 1) + '|';
        EXPECT_EQ(cells, sorted) << "rows move whole, equal ones keep their order";
        EXPECT_EQ(rows.Get(rows.Selected(), 1), "2");
    }
}

TEST(ListRows, KeepTheSelectionWithItsRow) {
    ListRows rows = Numbered({"a", "b", "c"});
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
