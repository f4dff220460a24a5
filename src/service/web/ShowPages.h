// The pages for people: "/", which leads to the others, and those for the panels of the main window, "/show1.aspx" (the
// list), "/show2.aspx" (news) and "/show3.aspx" (statistics). No site is named on them: the list never travels in plain
// text.
#pragma once

#include "service/web/DocumentShelf.h"
#include "service/web/Page.h"
#include "service/web/SiteFeed.h"

namespace tb {

// Feed and shelf must outlive the pages.
void AddShowPages(Pages& pages, SiteFeed& feed, DocumentShelf& shelf);

}  // namespace tb
