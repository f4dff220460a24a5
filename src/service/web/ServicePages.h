// All pages of the service. What a page is given must outlive it.
#pragma once

#include <optional>

#include "base/log.h"
#include "service/web/Caches.h"
#include "service/web/Intake.h"
#include "service/web/Page.h"
#include "service/web/SiteFeed.h"

namespace tb {

// "/MalDB.aspx": what changed in the list since a client's stamp.
void AddSitePages(Pages& pages, SiteFeed& feed);

// "/Reference/defaults.bin" and "/Reference/reference.bin": the published documents, 404 before the first publication.
void AddDocumentPages(Pages& pages, DocumentCache& documents);

// "/Versions.aspx": reports of versions.
void AddReportPages(Pages& pages, ReportQueue& reports);
// What a post to it reports, received now. Fields that are missing are empty, long ones are cut to 128 characters.
// Nothing without the field Key.
std::optional<VersionReport> ReadReport(TextView body);

// The pages for people: "/", which leads to the others, and those for the panels of the main window, "/show1.aspx" (the
// list), "/show2.aspx" (news) and "/show3.aspx" (statistics). No site is named on them: the list never travels in plain
// text.
void AddShowPages(Pages& pages, SiteFeed& feed, DocumentCache& documents);

// "/SubmitEmail.aspx", "/SubmitURL.aspx" and "/SubmissionStatus.aspx" (docs/formats/submission-exchange.md). A
// submission that cannot be stored at the moment is answered by "Error", upon which a client tries again, and gives a
// line in the log.
void AddSubmissionPages(Pages& pages, SubmissionIntake& submissions, LogSink& log);

// The pages of program updates: "/updates.xml", "/updates.bin" and "/updates.xml.sig", the same below "/Versions/NAME/"
// for a test version, and "/N/FILE", the files of version number N. An empty manifest where no version is published,
// and 404 for its files and its signature, for the signature of an unsigned version too. Files are found by number and
// name in the store; no part of a path names a file of the disk.
void AddUpdatePages(Pages& pages, UpdateCache& updates);

}  // namespace tb
