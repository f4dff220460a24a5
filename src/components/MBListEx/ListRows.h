// The content of a list control without its window: rows of cell texts, their order and the selected row.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"

namespace tb {

// How the cells of a column compare.
enum class ListOrder : std::uint32_t {
    // By their characters, without case.
    ByText,
    // By the numbers that they read as; cells that are no number come behind, by their text.
    ByNumber,
};

// Rows and columns count from 0; NoRow is none. Error 9 for one outside.
class ListRows {
public:
    static constexpr std::int32_t NoRow = -1;

    std::int32_t Columns() const { return m_Columns; }
    // Behind the others; rows that are there get an empty cell. Its index.
    std::int32_t AddColumn() { return m_Columns++; }
    std::int32_t Count() const { return static_cast<std::int32_t>(m_Rows.size()); }
    // A row of empty cells behind the others. Its index.
    std::int32_t Add();
    // The selection stays with its row, and with it when that one goes there is none.
    void Remove(std::int32_t row);
    void Clear();
    void Set(std::int32_t row, std::int32_t column, Text cell);
    const Text& Get(std::int32_t row, std::int32_t column) const;
    // The first row whose cell is that text, without case, or NoRow.
    std::int32_t Find(std::int32_t column, TextView cell) const;
    // Rows whose cells are equal keep their order; the selection stays with its row.
    void Sort(std::int32_t column, ListOrder order, bool descending);
    // NoRow selects none.
    void Select(std::int32_t row);
    std::int32_t Selected() const { return m_Selected; }

private:
    // Without the empty cells at its end.
    using Row = std::vector<Text>;

    const Row& RowAt(std::int32_t row) const;
    void RequireColumn(std::int32_t column) const;

    std::int32_t m_Columns = 0;
    std::vector<Row> m_Rows;
    std::int32_t m_Selected = NoRow;
};

}  // namespace tb
