// Files that an operator names on the command line.
#pragma once

#include <functional>
#include <vector>

#include "base/errors.h"
#include "platform/Files.h"

namespace tb {

// The InputError of a file that cannot be read: `expected` says what it should be, "a list of sites" for one.
RuntimeError UnreadableFile(const Text& path, const RuntimeError& error, const char* expected);
// The whole file, or that error.
Text ReadInputFile(Files& files, const Text& path, const char* expected);

// Reads a list of sites, a text file of lines "URL TAB category TAB validated", and gives the number of each, from 1
// on, and its three fields to `take`, in order. Empty lines are passed over; a carriage return before the line feed
// does not count. Raises an InputError that names the line when it has not exactly three fields, and one for a file
// that cannot be read.
void ForEachSiteLine(Files& files, const Text& path,
                     const std::function<void(size_t number, const std::vector<Text>& fields)>& take);

}  // namespace tb
