#include "components/MBListEx/ListRows.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

// What a cell is sorted by.
struct SortKey {
    std::optional<double> Number;
    Text Folded;
    std::int32_t Row;
};

SortKey KeyOf(const Text& cell, ListOrder order, std::int32_t row) {
    SortKey key{{}, LowerCase(TextView(cell)), row};
    if (order == ListOrder::ByNumber) {
        const auto number = [&] { return std::optional(ToDouble(cell)); };
        key.Number = TrapOr(std::optional<double>(), number, [](const RuntimeError&) {});
    }
    return key;
}

bool Before(const SortKey& left, const SortKey& right) {
    if (left.Number.has_value() != right.Number.has_value()) return left.Number.has_value();
    if (left.Number) return *left.Number < *right.Number;
    return left.Folded < right.Folded;
}

}  // namespace

// A negative index becomes one behind the end.
const ListRows::Row& ListRows::RowAt(std::int32_t row) const { return At(m_Rows, static_cast<std::size_t>(row)); }

void ListRows::RequireColumn(std::int32_t column) const {
    if (column < 0 || column >= m_Columns) throw Error(ErrorNumber::Subscript);
}

std::int32_t ListRows::Add() {
    m_Rows.emplace_back();
    return Count() - 1;
}

void ListRows::Remove(std::int32_t row) {
    RowAt(row);
    m_Rows.erase(m_Rows.begin() + row);
    if (row == m_Selected) {
        m_Selected = NoRow;
    } else if (row < m_Selected) {
        --m_Selected;
    }
}

void ListRows::Clear() {
    m_Rows.clear();
    m_Selected = NoRow;
}

void ListRows::Set(std::int32_t row, std::int32_t column, Text cell) {
    RowAt(row);
    RequireColumn(column);
    Row& cells = m_Rows[static_cast<std::size_t>(row)];
    const auto index = static_cast<std::size_t>(column);
    if (cells.size() <= index) cells.resize(index + 1);
    cells[index] = std::move(cell);
}

const Text& ListRows::Get(std::int32_t row, std::int32_t column) const {
    static const Text empty;
    const Row& cells = RowAt(row);
    RequireColumn(column);
    const auto index = static_cast<std::size_t>(column);
    return index < cells.size() ? cells[index] : empty;
}

std::int32_t ListRows::Find(std::int32_t column, TextView cell) const {
    const Text folded = LowerCase(cell);
    for (std::int32_t row = 0; row < Count(); ++row) {
        if (LowerCase(TextView(Get(row, column))) == folded) return row;
    }
    return NoRow;
}

void ListRows::Sort(std::int32_t column, ListOrder order, bool descending) {
    RequireColumn(column);
    std::vector<SortKey> keys;
    keys.reserve(m_Rows.size());
    for (std::int32_t row = 0; row < Count(); ++row) keys.push_back(KeyOf(Get(row, column), order, row));
    std::stable_sort(keys.begin(), keys.end(), [&](const SortKey& left, const SortKey& right) {
        return descending ? Before(right, left) : Before(left, right);
    });
    std::vector<Row> sorted(keys.size());
    std::int32_t selected = NoRow;
    for (std::size_t position = 0; position < keys.size(); ++position) {
        if (keys[position].Row == m_Selected) selected = static_cast<std::int32_t>(position);
        sorted[position] = std::move(m_Rows[static_cast<std::size_t>(keys[position].Row)]);
    }
    m_Rows = std::move(sorted);
    m_Selected = selected;
}

void ListRows::Select(std::int32_t row) {
    if (row != NoRow) RowAt(row);
    m_Selected = row;
}

}  // namespace tb
