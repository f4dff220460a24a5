#include "platform/LargeBlock.h"

#include "base/errors.h"

namespace tb {

// Large pages are had only with a right that users do not have.
LargeBlock MakeLargeBlock() {
    LargeBlock block(static_cast<char*>(std::malloc(LargeBlockSize)));
    if (!block) throw Error(ErrorNumber::OutOfMemory);
    return block;
}

}  // namespace tb
