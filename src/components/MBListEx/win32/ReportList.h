// ListRows in the system's list view, which asks for each cell that it draws.
#pragma once

#include "components/MBListEx/ListRows.h"
#include "components/MBListEx/MBListExFace.h"
#include "components/faces/win32/ControlWindow.h"

namespace tb {

class ReportList : public ControlWindow {
public:
    ReportList(HWND parent, const ControlBox& box, const MBListExEvents& events);

    // For reading.
    const ListRows& Rows() const { return m_Rows; }
    std::int32_t AddColumn(const Text& title, std::int32_t width);
    void Set(std::int32_t row, std::int32_t column, Text cell);
    void Select(std::int32_t row);
    void Redraw(bool on) { Ask(WM_SETREDRAW, on ? TRUE : FALSE); }
    // Changes rows or their order by `change` and shows them.
    template <typename Change>
    void Rearrange(Change change) {
        change(m_Rows);
        Show();
    }

private:
    LRESULT Notified(NMHDR& what) noexcept override;
    void FillCell(LVITEMW& item) const;
    void SelectionChanged();
    // Makes the view agree with the rows.
    void Show();
    void ShowSelection();

    ListRows m_Rows;
    const MBListExEvents m_Events;
    // The view reports what the program does, too.
    bool m_Own = false;
};

}  // namespace tb
