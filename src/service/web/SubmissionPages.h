// The pages for what people hand in (docs/formats/submission-exchange.md).
#pragma once

#include "base/log.h"
#include "service/web/Page.h"
#include "service/web/SubmissionBox.h"

namespace tb {

// "/SubmitEmail.aspx", "/SubmitURL.aspx" and "/SubmissionStatus.aspx". A submission that cannot be stored at the moment
// is answered by "Error", upon which a client tries again, and gives a line in the log. Box and log must outlive the
// pages.
void AddSubmissionPages(Pages& pages, SubmissionBox& box, LogSink& log);

}  // namespace tb
