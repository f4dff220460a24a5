#include <cstdio>

#include "service/web/Form.h"
#include "service/web/ServicePages.h"

namespace tb {

namespace {

constexpr size_t SmallForm = 4096;
// Characters kept of a field of a report; longer ones are cut.
constexpr size_t LongestField = 128;

// The form of the header "Last-Modified": "Sun, 06 Nov 1994 08:49:37 GMT".
Text HttpDate(const Date& utc) {
    static constexpr const char* Days[] = {"Thu", "Fri", "Sat", "Sun", "Mon", "Tue", "Wed"};
    static constexpr const char* Months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const CivilDate civil = utc.Civil();
    // 1 January 1970 was a Thursday.
    const std::int64_t day = ((utc.Day().Seconds() / Date::SecondsPerDay) % 7 + 7) % 7;
    char text[96];
    std::snprintf(text, sizeof text, "%s, %02d %s %04d %02d:%02d:%02d GMT", Days[day], civil.Day,
                  Months[civil.Month - 1], civil.Year, civil.Hour, civil.Minute, civil.Second);
    return text;
}

}  // namespace

void AddSitePages(Pages& pages, SiteFeed& feed) {
    pages.push_back({"/MalDB.aspx", false, true, SmallForm, [&feed](const Question& question) {
                         const auto stamp = Form(question.Body).Find("TS");
                         if (!stamp) return PlainReply(400, "The field TS is missing.");
                         return FramedReply(feed.ReplySince(*stamp));
                     }});
}

void AddDocumentPages(Pages& pages, DocumentCache& documents) {
    for (const TextView name : {DefaultsFile, ReferenceFile}) {
        pages.push_back({"/Reference/" + Text(name), true, true, SmallForm, [&documents, name](const Question&) {
                             const auto document = documents.Find(Text(name));
                             if (!document) return PlainReply(404, Text(name) + " is not published yet.");
                             // The reply keeps the document alive that its body is a part of.
                             Reply reply = FramedReply({document, &document->Framed});
                             reply.LastModified = HttpDate(document->Modified);
                             return reply;
                         }});
    }
}

std::optional<VersionReport> ReadReport(TextView body) {
    const Form form(body);
    if (!form.Find("Key")) return std::nullopt;
    const auto field = [&](const char* name) { return Text(Left(form.Find(name).value_or(Text()), LongestField)); };
    return VersionReport{field("Key"), field("AppVer"), field("OSVer"), field("IEVer"), SystemUtcNow()};
}

void AddReportPages(Pages& pages, ReportQueue& reports) {
    pages.push_back({"/Versions.aspx", false, true, SmallForm, [&reports](const Question& question) {
                         auto report = ReadReport(question.Body);
                         if (!report) return PlainReply(400, "The field Key is missing.");
                         return reports.Take(std::move(*report)) ? PlainReply(200, "OK")
                                                                 : PlainReply(503, "Too many reports wait; try again.");
                     }});
}

}  // namespace tb
