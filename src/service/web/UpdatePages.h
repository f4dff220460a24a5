// The pages of program updates: "/updates.xml", "/updates.bin" and "/updates.xml.sig", the same below "/Versions/NAME/"
// for a test version, and "/N/FILE", the files of version number N. An empty manifest where no version is published,
// and 404 for its files and its signature, for the signature of an unsigned version too. Files are found by number and
// name in the store; no part of a path names a file of the disk.
#pragma once

#include "service/web/Page.h"
#include "service/web/UpdateShelf.h"

namespace tb {

// The shelf must outlive the pages.
void AddUpdatePages(Pages& pages, UpdateShelf& shelf);

}  // namespace tb
