#include "sitedb/codec/StringBuilder.h"

#include "base/errors.h"

namespace tb {

namespace {

// Numbers of application errors count from here.
constexpr std::uint32_t ApplicationBase = 0x80040000U;

RuntimeError ListError(std::uint32_t offset, const char* source, const char* description) {
    return {static_cast<std::int32_t>(ApplicationBase + offset), description, source};
}

}  // namespace

void StringBuilder::lGrowthRate(std::int32_t rate) {
    if (rate < 1) {
        throw ListError(0x3E8, "GLStringList->Let_lGrowthRate", "The Growth Rate must be greater than zero");
    }
    m_GrowthRate = rate;
}

void StringBuilder::SetInitialCapacity(std::int32_t capacity) {
    if (capacity < 1) {
        throw ListError(0x3EB, "GLArrayList->SetInitialCapacity", "The Initial Capacity must greater than zero.");
    }
    if (m_Pieces.empty()) m_InitialCapacity = capacity;
}

void StringBuilder::Append(Text text) {
    if (m_Pieces.empty()) {
        m_Pieces.resize(static_cast<size_t>(m_InitialCapacity));
    } else if (m_Count == lCapacity()) {
        m_Pieces.resize(m_Pieces.size() + static_cast<size_t>(m_GrowthRate));
    }
    m_Pieces[static_cast<size_t>(m_Count++)] = std::move(text);
}

const Text& StringBuilder::Item(std::int32_t index) const {
    if (index < 0 || index > m_Count) throw ListError(0x3EA, "GLStringList->Item", "Index out of bounds");
    return At(m_Pieces, static_cast<size_t>(index));
}

Text StringBuilder::ToString() const { return Join(m_Pieces, ""); }

}  // namespace tb
