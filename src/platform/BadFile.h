// What becomes of a durable file that could not be read before it is written anew: what a person may have in it is
// never lost.
#pragma once

#include <filesystem>

#include "platform/Files.h"

namespace tb {

// Appended to the name of a file that could not be loaded, for the copy made before it is replaced.
inline constexpr TextView BadSuffix = ".bad";

// The name of that copy.
std::filesystem::path BadFile(std::filesystem::path path);

// False only when the system says that there is no such file. Raises what else keeps it from being opened, so that a
// file which cannot be read now is not taken for one that is missing.
bool IsThere(Files& files, const std::filesystem::path& path);

// Copies the file to its name and BadSuffix, in place of an older copy; nothing happens when there is no file. Raises
// what fails; an older copy then stays.
void KeepBadFile(Files& files, const std::filesystem::path& path);

}  // namespace tb
