#include "components/MBListEx/win32/ReportList.h"

#include <algorithm>
#include <utility>

#include "base/errors.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

constexpr DWORD Style = WS_TABSTOP | WS_BORDER | LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS;

}  // namespace

ReportList::ReportList(HWND parent, const ControlBox& box, const MBListExEvents& events)
    : ControlWindow({L"MBListEx", WC_LISTVIEWW, Style, ICC_LISTVIEW_CLASSES}, parent, box), m_Events(events) {
    Ask(LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
}

std::int32_t ReportList::AddColumn(const Text& title, std::int32_t width) {
    std::wstring shown = ToSystem(title);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    column.pszText = shown.data();
    column.cx = width;
    column.iSubItem = m_Rows.Columns();
    Order("LVM_INSERTCOLUMN",
          Ask(LVM_INSERTCOLUMNW, static_cast<WPARAM>(m_Rows.Columns()), reinterpret_cast<LPARAM>(&column)), -1);
    return m_Rows.AddColumn();
}

void ReportList::Set(std::int32_t row, std::int32_t column, Text cell) {
    m_Rows.Set(row, column, std::move(cell));
    Ask(LVM_REDRAWITEMS, static_cast<WPARAM>(row), row);
}

void ReportList::Select(std::int32_t row) {
    m_Rows.Select(row);
    ShowSelection();
    if (row != ListRows::NoRow) Ask(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

void ReportList::Show() {
    m_Own = true;
    Ask(LVM_SETITEMCOUNT, static_cast<WPARAM>(m_Rows.Count()), LVSICF_NOSCROLL);
    m_Own = false;
    ShowSelection();
    InvalidateRect(Original(), nullptr, TRUE);
}

void ReportList::ShowSelection() {
    const std::int32_t row = m_Rows.Selected();
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    m_Own = true;
    // -1 is all of them.
    Ask(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    item.state = item.stateMask;
    if (row != ListRows::NoRow) Ask(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    m_Own = false;
}

LRESULT ReportList::Notified(NMHDR& what) noexcept {
    const auto tell = [&](void (*event)(void*, std::int32_t) noexcept, std::int32_t which) {
        if (event != nullptr && which >= 0) event(m_Events.Context, which);
    };
    switch (what.code) {
    case LVN_GETDISPINFOW:
        Trap([&] { FillCell(reinterpret_cast<NMLVDISPINFOW&>(what).item); },
             [](const RuntimeError&) { /* no memory: the cell is drawn as it is */ });
        break;
    case LVN_ITEMCHANGED: SelectionChanged(); break;
    case LVN_COLUMNCLICK: tell(m_Events.ColumnClick, reinterpret_cast<NMLISTVIEW&>(what).iSubItem); break;
    case NM_DBLCLK: tell(m_Events.DoubleClick, reinterpret_cast<NMITEMACTIVATE&>(what).iItem); break;
    default: break;
    }
    return 0;
}

void ReportList::FillCell(LVITEMW& item) const {
    if ((item.mask & LVIF_TEXT) == 0 || item.cchTextMax <= 0) return;
    // The view may ask for a row that has just gone.
    const bool known =
        item.iItem >= 0 && item.iItem < m_Rows.Count() && item.iSubItem >= 0 && item.iSubItem < m_Rows.Columns();
    const std::wstring cell = known ? ToSystem(m_Rows.Get(item.iItem, item.iSubItem)) : std::wstring();
    const std::size_t size = cell.copy(item.pszText, static_cast<std::size_t>(item.cchTextMax) - 1);
    item.pszText[size] = L'\0';
}

void ReportList::SelectionChanged() {
    if (m_Own) return;
    const auto row = static_cast<std::int32_t>(Ask(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    if (row == m_Rows.Selected() || row >= m_Rows.Count()) return;
    m_Rows.Select(row);
    if (m_Events.Selected != nullptr) m_Events.Selected(m_Events.Context, row);
}

}  // namespace tb
