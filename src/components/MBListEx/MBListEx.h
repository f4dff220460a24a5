// A list control as the program sees it, through MBListEx.ocx.
#pragma once

#include <functional>

#include "components/MBListEx/ListRows.h"
#include "components/MBListEx/MBListExFace.h"

namespace tb {

// What each operation does stands at its namesake of MBListExFace. Neither copied nor moved.
class MBListEx {
public:
    using Handler = std::function<void(std::int32_t)>;
    // Told of the user's acts, with the row or column. What they throw ends the process.
    Handler Selection;
    Handler DoubleClick;
    Handler ColumnClick;

    // `face` (FaceOf<MBListExFace>) must outlive the object; `parent` is a window of this thread.
    MBListEx(const MBListExFace& face, void* parent, std::int32_t left, std::int32_t top, std::int32_t width,
             std::int32_t height)
        : m_Face(face) {
        const MBListExEvents events{this, &Tell<&MBListEx::Selection>, &Tell<&MBListEx::DoubleClick>,
                                    &Tell<&MBListEx::ColumnClick>};
        CallFace(m_Face.Create, parent, left, top, width, height, &events, &m_List);
    }
    MBListEx(const MBListEx&) = delete;
    MBListEx& operator=(const MBListEx&) = delete;
    ~MBListEx() { m_Face.Destroy(m_List); }

    void* Window() const {
        void* window = nullptr;
        CallFace(m_Face.Window, m_List, &window);
        return window;
    }
    void Move(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        CallFace(m_Face.Move, m_List, left, top, width, height);
    }
    void Redraw(bool on) { CallFace(m_Face.Redraw, m_List, on ? 1 : 0); }
    std::int32_t AddColumn(TextView title, std::int32_t width) {
        return Number(m_Face.AddColumn, title.data(), title.size(), width);
    }
    std::int32_t Add() { return Number(m_Face.Add); }
    void Remove(std::int32_t row) { CallFace(m_Face.Remove, m_List, row); }
    void Clear() { CallFace(m_Face.Clear, m_List); }
    std::int32_t Count() const { return Number(m_Face.Count); }
    void Set(std::int32_t row, std::int32_t column, TextView cell) {
        CallFace(m_Face.Set, m_List, row, column, cell.data(), cell.size());
    }
    Text Get(std::int32_t row, std::int32_t column) const {
        return TextOfFace(
            [&](FaceTake take, void* target) { CallFace(m_Face.Get, m_List, row, column, take, target); });
    }
    std::int32_t Find(std::int32_t column, TextView cell) const {
        return Number(m_Face.Find, column, cell.data(), cell.size());
    }
    void Sort(std::int32_t column, ListOrder order = ListOrder::ByText, bool descending = false) {
        CallFace(m_Face.Sort, m_List, column, static_cast<std::uint32_t>(order), descending ? 1 : 0);
    }
    void Select(std::int32_t row) { CallFace(m_Face.Select, m_List, row); }
    std::int32_t Selected() const { return Number(m_Face.Selected); }

private:
    template <Handler MBListEx::*Member>
    static void Tell(void* context, std::int32_t which) noexcept {
        const Handler& handler = static_cast<MBListEx*>(context)->*Member;
        if (handler) handler(which);
    }
    // Of a function that answers by a number behind its arguments.
    template <typename Function, typename... Arguments>
    std::int32_t Number(Function function, Arguments... arguments) const {
        std::int32_t number = 0;
        CallFace(function, m_List, arguments..., &number);
        return number;
    }

    const MBListExFace& m_Face;
    void* m_List = nullptr;
};

}  // namespace tb
