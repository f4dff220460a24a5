// Plain lists of sites, as publishers and tests write them.
#pragma once

#include "sitedb/EvilDB.h"

namespace tb {

// Adds the entries of a text file, one a line, "URL TAB category TAB validated", in order. Empty lines are passed over;
// a carriage return before the line feed does not count. What the list's own rules refuse (a duplicate, a URL without a
// host) is refused here as well. Raises an InputError that names the line when it has not exactly three fields, and one
// for a file that cannot be read; the list is then half filled.
void AddSiteList(EvilDB& evilDB, Files& files, const Text& path);

}  // namespace tb
