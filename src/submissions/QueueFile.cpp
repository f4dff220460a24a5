#include "submissions/QueueFile.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "submissions/Blanks.h"

namespace tb {

namespace {

constexpr TextView LineEnd = "\r\n";

// With a blank in the place of the sign and one behind.
Text Printed(std::int32_t number) { return (number < 0 ? "" : " ") + std::to_string(number) + " "; }

Text Begin(const SubmissionQualifiers& said) {
    return Printed(said.CategoryID) + "," + Printed(said.ConfidenceID) + ",";
}

}  // namespace

Text EmailQueueText(const SubmissionQualifiers& said, std::int32_t fingerPrint, TextView headers, TextView body) {
    Text text = Begin(said) + Printed(fingerPrint);
    text.append(LineEnd).append(headers).append(body).append(LineEnd);
    return text;
}

Text UrlQueueText(const SubmissionQualifiers& said, TextView mainUrl, TextView url) {
    return Begin(said).append(mainUrl).append(LineEnd) + RemoveAll(url, LineEnd);
}

QueueText ReadQueueText(TextView file) {
    const size_t end = file.find(LineEnd);
    if (end == TextView::npos) throw Error(ErrorNumber::InvalidCall);
    const std::vector<TextView> fields = SplitViews(file.substr(0, end), ',');
    QueueText text;
    text.Said.CategoryID = ToInt16(At(fields, 0));
    text.Said.ConfidenceID = ToInt16(At(fields, 1));
    text.Key = TrimBlanks(At(fields, 2));
    text.Content = file.substr(end + LineEnd.size());
    return text;
}

Text FileExtension(TextView fileName) {
    const size_t dot = fileName.rfind('.');
    if (dot == TextView::npos || fileName.find('\\', dot) != TextView::npos) return {};
    return Text(fileName.substr(dot + 1));
}

}  // namespace tb
