// The text of a queue file: what was submitted and what the user said about it. Format: docs/formats/queue-file.md.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

// What the user says about a submission.
struct SubmissionQualifiers {
    std::int16_t CategoryID = 0;
    std::int16_t ConfidenceID = 0;
};

// `headers` end in CR LF CR LF.
Text EmailQueueText(const SubmissionQualifiers& said, std::int32_t fingerPrint, TextView headers, TextView body);
Text UrlQueueText(const SubmissionQualifiers& said, TextView mainUrl, TextView url);

struct QueueText {
    SubmissionQualifiers Said;
    // The rest of line 1's third field, without blanks around it: a fingerprint, or a URL up to its first comma.
    Text Key;
    // Everything behind line 1.
    tb::Text Content;
};

// Error 5 without a line end, 9 for fewer than three fields, 13 or 6 for a number that is none.
QueueText ReadQueueText(TextView file);

// The text behind the last dot; empty without one, or when a "\" stands behind it.
Text FileExtension(TextView fileName);

}  // namespace tb
