// Texts that must not stand whole in a program file are put together from pieces while the program runs.
#pragma once

#include "base/text.h"

namespace tb {

// The characters of one piece. They are read through a volatile pointer and the call is not inlined, so that no
// compiler joins pieces while it builds.
[[gnu::noinline]] Text Piece(const volatile char* characters);

}  // namespace tb
