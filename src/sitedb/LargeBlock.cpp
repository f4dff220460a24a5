#include "sitedb/LargeBlock.h"

#include "base/errors.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace tb {

LargeBlock MakeLargeBlock() {
#if defined(__linux__)
    LargeBlock block(static_cast<char*>(std::aligned_alloc(LargeBlockSize, LargeBlockSize)));
    // A wish: what is refused is had in small pages.
    if (block) ::madvise(block.get(), LargeBlockSize, MADV_HUGEPAGE);
#else
    LargeBlock block(static_cast<char*>(std::malloc(LargeBlockSize)));
#endif
    if (!block) throw Error(ErrorNumber::OutOfMemory);
    return block;
}

}  // namespace tb
