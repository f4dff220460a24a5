// Large pieces of memory, in the system's large pages where it has them for the asking: then a machine that looks for
// an entry among millions seldom has to look for its page first, and filling memory stops a thousandth as often.
#pragma once

#include <cstdlib>
#include <memory>

namespace tb {

struct LargeBlockEnd {
    void operator()(char* block) const { std::free(block); }
};
using LargeBlock = std::unique_ptr<char, LargeBlockEnd>;

inline constexpr size_t LargeBlockSize = size_t{1} << 21;

// With any content. Raises error 7 when there is no room.
LargeBlock MakeLargeBlock();

}  // namespace tb
