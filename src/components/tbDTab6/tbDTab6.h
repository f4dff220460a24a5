// A tab strip as the program sees it, through tbDTab6.ocx.
#pragma once

#include <array>
#include <functional>

#include "components/tbDTab6/tbDTab6Face.h"

namespace tb {

// What each operation does stands at its namesake of tbDTab6Face. Neither copied nor moved.
class tbDTab6 {
public:
    // `face` (FaceOf<tbDTab6Face>) must outlive the object; `parent` is a window of this thread. `selected` must not
    // throw: what it throws ends the process.
    tbDTab6(const tbDTab6Face& face, void* parent, std::int32_t left, std::int32_t top, std::int32_t width,
            std::int32_t height, std::function<void(std::int32_t)> selected)
        : m_Face(face), m_Selected(std::move(selected)) {
        const tbDTab6Events events{this, [](void* context, std::int32_t index) noexcept {
                                       const auto* const self = static_cast<tbDTab6*>(context);
                                       if (self->m_Selected) self->m_Selected(index);
                                   }};
        CallFace(m_Face.Create, parent, left, top, width, height, &events, &m_Strip);
    }
    tbDTab6(const tbDTab6&) = delete;
    tbDTab6& operator=(const tbDTab6&) = delete;
    ~tbDTab6() { m_Face.Destroy(m_Strip); }

    void* Window() const {
        void* window = nullptr;
        CallFace(m_Face.Window, m_Strip, &window);
        return window;
    }
    void Move(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        CallFace(m_Face.Move, m_Strip, left, top, width, height);
    }
    std::array<std::int32_t, 4> Interior() const {
        std::array<std::int32_t, 4> box{};
        CallFace(m_Face.Interior, m_Strip, box.data());
        return box;
    }
    std::int32_t Add(TextView key, TextView caption) {
        std::int32_t index = 0;
        CallFace(m_Face.Add, m_Strip, key.data(), key.size(), caption.data(), caption.size(), &index);
        return index;
    }
    void Remove(std::int32_t index) { CallFace(m_Face.Remove, m_Strip, index); }
    std::int32_t Count() const {
        std::int32_t count = 0;
        CallFace(m_Face.Count, m_Strip, &count);
        return count;
    }
    std::int32_t Find(TextView key) const {
        std::int32_t index = 0;
        CallFace(m_Face.Find, m_Strip, key.data(), key.size(), &index);
        return index;
    }
    Text Caption(std::int32_t index) const {
        return TextOfFace([&](FaceTake take, void* target) { CallFace(m_Face.Caption, m_Strip, index, take, target); });
    }
    void Select(std::int32_t index) { CallFace(m_Face.Select, m_Strip, index); }
    std::int32_t Selected() const {
        std::int32_t index = 0;
        CallFace(m_Face.Selected, m_Strip, &index);
        return index;
    }

private:
    const tbDTab6Face& m_Face;
    std::function<void(std::int32_t)> m_Selected;
    void* m_Strip = nullptr;
};

}  // namespace tb
