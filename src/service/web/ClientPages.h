// The pages that the program itself asks for.
#pragma once

#include "service/web/DocumentShelf.h"
#include "service/web/Page.h"
#include "service/web/ReportBox.h"
#include "service/web/SiteFeed.h"

namespace tb {

// "/MalDB.aspx": what changed in the list since a client's stamp. The feed must outlive the pages.
void AddSitePages(Pages& pages, SiteFeed& feed);

// "/Reference/defaults.bin" and "/Reference/reference.bin": the published documents, 404 before the first publication.
void AddDocumentPages(Pages& pages, DocumentShelf& shelf);

// "/Versions.aspx": reports of versions.
void AddReportPages(Pages& pages, ReportBox& box);

// The form of the header "Last-Modified": "Sun, 06 Nov 1994 08:49:37 GMT".
Text HttpDate(const Date& utc);

}  // namespace tb
