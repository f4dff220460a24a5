// Reading a stream of another program.
#pragma once

#include <windows.h>

#include <objidl.h>

#include "base/text.h"

namespace tb {

// The bytes that are really there, at most `limit`; nothing that the stream tells about itself is believed. Error 57
// when a read fails, also half-way.
Text ReadStream(IStream& stream, size_t limit);

}  // namespace tb
