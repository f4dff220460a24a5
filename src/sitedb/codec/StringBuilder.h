// A text collected piece by piece and joined at the end.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"

namespace tb {

class StringBuilder {
public:
    std::int32_t lCount() const { return m_Count; }
    // 0 before the first Append.
    std::int32_t lCapacity() const { return static_cast<std::int32_t>(m_Pieces.size()); }

    // Pieces by which the array grows when it is full. Below 1: error 0x800403E8.
    std::int32_t lGrowthRate() const { return m_GrowthRate; }
    void lGrowthRate(std::int32_t rate);

    // Pieces to make room for at the first Append; ignored after it. Below 1: error 0x800403EB.
    void SetInitialCapacity(std::int32_t capacity);

    void Append(Text text);

    // Piece `index`, from 0. The index lCount() is let through and gives the empty text while the array has room, error
    // 9 otherwise; any other index outside raises error 0x800403EA.
    const Text& Item(std::int32_t index) const;

    Text ToString() const;

private:
    std::vector<Text> m_Pieces;
    std::int32_t m_Count = 0;
    std::int32_t m_GrowthRate = 50;
    std::int32_t m_InitialCapacity = 50;
};

}  // namespace tb
