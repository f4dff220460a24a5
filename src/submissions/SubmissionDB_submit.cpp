#include <algorithm>

#include "base/errors.h"
#include "base/numbers.h"
#include "shell/helpers/GeneralHelpers.h"
#include "shell/helpers/OpenDialog.h"
#include "submissions/Blanks.h"
#include "submissions/SubmissionDB.h"

namespace tb {

namespace {

constexpr TextView LineEnd = "\r\n";
constexpr TextView EmptyLine = "\r\n\r\n";
constexpr TextView SubjectName = "SUBJECT: ";
constexpr size_t LongestURL = 800;
constexpr const char* Canceling = "Canceling submission at user request";

bool EndsIn(const Text& text, TextView end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool BeginsWithHttp(TextView text) { return LowerCase(Left(text, 4)) == "http"; }

}  // namespace

void SubmissionDB::SubmitEvilEmail(Text& headers, const Text& body) noexcept {
    Trap(
        [&] {
            if (headers.size() + body.size() > LargestMail) {
                ShowMessage(Program(), "Email message is too large", MessageButtons::Exclamation);
                return;
            }
            while (EndsIn(headers, LineEnd)) headers.resize(headers.size() - LineEnd.size());
            headers += EmptyLine;
            // Anywhere, even at the end of another name. The rest begins behind it, or, without one, at the same
            // distance from the beginning of the headers.
            const size_t found = UpperCase(headers).find(SubjectName);
            const size_t rest = found == Text::npos ? SubjectName.size() - 1 : found + SubjectName.size();
            const Text subject = found == Text::npos ? Text() : headers.substr(rest, headers.find('\r', rest) - rest);
            const std::int32_t fingerPrint = CalcFingerPrint(body);
            if (UniqueKeyExists(std::to_string(fingerPrint))) {
                ShowMessage(Program(),
                            "Previously Submitted Email: \r\n" + headers.substr(std::min(rest, headers.size())),
                            MessageButtons::Information);
                return FreeMemory(Program(), m_Parts.Service.Log);
            }
            SubmissionQualifiers said;
            if (!GetSubmissionQualifiers(said, subject)) {
                ShowMessage(Program(), Canceling, MessageButtons::Information, "Email Submission");
                return;
            }
            WriteQueueFile(".E", EmailQueueText(said, fingerPrint, headers, body));
        },
        DropFailure("Error Submit Email: "));
}

void SubmissionDB::SubmitEvilURL(const Text& text) noexcept {
    const auto held = weak_from_this().lock();
    Trap(
        [&] {
            const auto inform = [&](const char* message, const Text& about) {
                ShowMessage(Program(), message + about, MessageButtons::Information);
            };
            // Lets several URLs through at once, for testing.
            const bool quiet = Setting("MAIN", "ConfirmSubmission", "1") == "0" && IsDebugMode();
            Text cleaned = RemoveAll(TrimBlanks(text), "\r");
            while (EndsIn(cleaned, "\n")) cleaned.pop_back();
            const std::vector<Text> lines = Split(cleaned, '\n');
            if (lines.size() > 1 && !quiet) {
                return inform("Please submit URLS individually as a single line of text: \r\n", cleaned);
            }
            if (!IsDebugMode() && !BeginsWithHttp(cleaned)) {
                return inform("Please submit URLS beginning with 'http://' or 'https://': \r\n", cleaned);
            }
            SubmissionQualifiers said;
            if (!GetSubmissionQualifiers(said, text)) {
                ShowMessage(Program(), Canceling, MessageButtons::Information, "URL Submission");
                return;
            }
            std::vector<Text> repeated;
            for (const Text& line : lines) SubmitLine(line, said, repeated);
            if (repeated.empty()) return;
            const Text message = "Previously submitted URLS: " + Join(repeated, ", ");
            if (Setting("MAIN", "ConfirmSubmission", "0") == "1") {
                ShowMessage(Program(), message, 0);
            } else {
                Log(message);
            }
            FreeMemory(Program(), m_Parts.Service.Log);
        },
        DropFailure("Error Submit URL: "));
}

void SubmissionDB::SubmitLine(Text line, const SubmissionQualifiers& said, std::vector<Text>& repeated) {
    if (!BeginsWithHttp(line)) line.insert(0, "http://");
    while (EndsIn(line, "/")) line.pop_back();
    const Text mainUrl = GetMainURL(line);
    if (Exists(line) || Exists(mainUrl) || line.size() > LongestURL) {
        repeated.push_back(std::move(line));
    } else {
        WriteQueueFile(".U", UrlQueueText(said, mainUrl, line));
    }
}

bool SubmissionDB::GetSubmissionQualifiers(SubmissionQualifiers& said, const Text& caption) noexcept {
    bool accepted = false;
    Trap(
        [&] {
            App& app = m_Parts.Service.Program;
            const OpenDialog open(app);
            QualifiersDialog dialog(app, m_Parts.Service.Log);
            // Reference data that came later than this object bring others.
            if (app.Settings) m_Categories = app.Settings->TryGlobalsSection("CATEGORIES");
            dialog.Setup(m_Categories, caption, Setting("SubCat", "LastCategoryID", "2"),
                         Setting("SubCat", "LastConfidenceID", "3"));
            m_Parts.Qualifiers.ShowModal(dialog,
                                         RestoreWindowPosition(app, "SubCat", m_Parts.Qualifiers.Extent(dialog)));
            const auto remember = [&](TextView key, const Text& value) {
                if (app.Settings) app.Settings->WriteXMLString("SubCat", key, value);
            };
            if (dialog.Result == 1) {
                accepted = true;
                said = {dialog.CategoryID, dialog.ConfidenceID};
                remember("LastCategoryID", std::to_string(dialog.CategoryID));
                remember("LastConfidenceID", std::to_string(dialog.ConfidenceID));
            }
            remember("LastTop", ToText(static_cast<double>(dialog.LastTop)));
            remember("LastLeft", ToText(static_cast<double>(dialog.LastLeft)));
        },
        DropFailure("Error Get Submission Qualifiers: "));
    return accepted;
}

void SubmissionDB::WriteQueueFile(const Text& extension, const Text& content) {
    const auto taken = [&] { return m_Queue.Holds(std::to_string(m_LastSubmissionIDValue) + extension); };
    // A store that could not be saved, or was lost, counts anew: what waits under such a number must not be replaced.
    while (taken()) m_LastSubmissionIDValue = NarrowToInt16(m_LastSubmissionIDValue + 1);
    const std::optional<std::int16_t> number = NextSubmissionID();
    if (number) m_Queue.Add(std::to_string(*number) + extension, content);
}

}  // namespace tb
