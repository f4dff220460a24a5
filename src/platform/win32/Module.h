// Files of code that this process has loaded.
#pragma once

#include <windows.h>

#include <filesystem>

namespace tb {

// The program or library that this code was linked into; it is not held.
HMODULE OwnModule() noexcept;

// Where a module lies; null is the program. Error 51 when the system does not tell.
std::filesystem::path FileOf(HMODULE module);

}  // namespace tb
