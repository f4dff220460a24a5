// A code page as the system knows it.
#pragma once

#include <optional>

#include "base/codepage.h"

namespace tb {

// Nothing for a page of more than one byte a character, and for one that the system has not. The other case of a letter
// is that which the system's file names go by, in every language; a letter whose other case is not among the page's
// bytes from 0x80 on stays as it is.
std::optional<CodePage> ReadCodePage(std::uint32_t number);

}  // namespace tb
