// Plain lists of sites, as publishers and tests write them.
#pragma once

#include <functional>

#include "sitedb/EvilDB.h"

namespace tb {

// Reads a text file of lines "URL TAB category TAB validated" and gives the number of each, from 1 on, and its three
// fields to `take`, in order. Empty lines are passed over; a carriage return before the line feed does not count.
// Raises an InputError that names the line when it has not exactly three fields, and one for a file that cannot be
// read.
void ForEachSiteLine(Files& files, const Text& path,
                     const std::function<void(size_t number, const std::vector<Text>& fields)>& take);

// Adds the entries of such a file, in order. What the list's own rules refuse (a duplicate, a URL without a host) is
// refused here as well. Raises what ForEachSiteLine raises; the list is then half filled.
void AddSiteList(EvilDB& evilDB, Files& files, const Text& path);

}  // namespace tb
