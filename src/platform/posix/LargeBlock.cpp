#include "platform/LargeBlock.h"

#include <sys/mman.h>

#include "base/errors.h"

namespace tb {

LargeBlock MakeLargeBlock() {
    LargeBlock block(static_cast<char*>(std::aligned_alloc(LargeBlockSize, LargeBlockSize)));
    if (!block) throw Error(ErrorNumber::OutOfMemory);
    // A wish: what is refused is had in small pages.
    ::madvise(block.get(), LargeBlockSize, MADV_HUGEPAGE);
    return block;
}

}  // namespace tb
