#include "submissions/SubmissionIntake.h"

#include <algorithm>

#include "base/numbers.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/WindowPosition.h"
#include "submissions/Blanks.h"

namespace tb {

namespace {

constexpr TextView LineEnd = "\r\n";
constexpr TextView EmptyLine = "\r\n\r\n";
constexpr TextView SubjectName = "SUBJECT: ";
constexpr size_t LongestURL = 800;
constexpr const char* Canceling = "Canceling submission at user request";

bool BeginsWithHttp(TextView text) { return LowerCase(Left(text, 4)) == "http"; }

}  // namespace

SubmissionIntake::SubmissionIntake(const SubmissionHost& host, SubmissionStore& store, SubmissionQueue& queue,
                                   QualifiersView& qualifiers)
    : m_Host(host), m_Store(store), m_Queue(queue), m_Qualifiers(qualifiers) {
    if (const auto& settings = host.Program().Settings) m_Categories = settings->TryGlobalsSection("CATEGORIES");
}

void SubmissionIntake::SubmitEvilEmail(Text headers, const Text& body) noexcept {
    Trap(
        [&] {
            if (headers.size() + body.size() > LargestMail) {
                ShowMessage(m_Host.Program(), "Email message is too large", MessageButtons::Exclamation);
                return;
            }
            while (headers.ends_with(LineEnd)) headers.resize(headers.size() - LineEnd.size());
            headers += EmptyLine;
            // Anywhere, even at the end of another name. The rest begins behind it, or, without one, at the same
            // distance from the beginning of the headers.
            const size_t found = UpperCase(headers).find(SubjectName);
            const size_t rest = found == Text::npos ? SubjectName.size() - 1 : found + SubjectName.size();
            const Text subject = found == Text::npos ? Text() : headers.substr(rest, headers.find('\r', rest) - rest);
            const std::int32_t fingerPrint = m_Store.CalcFingerPrint(body);
            if (m_Store.UniqueKeyExists(std::to_string(fingerPrint))) {
                m_Host.Inform("Previously Submitted Email: \r\n" + headers.substr(std::min(rest, headers.size())));
                return m_Host.TrimMemory();
            }
            const auto said = GetSubmissionQualifiers(subject);
            if (!said) return m_Host.Inform(Canceling, "Email Submission");
            Enqueue(".E", EmailQueueText(*said, fingerPrint, headers, body));
        },
        m_Host.DropFailure("Error Submit Email: "));
}

void SubmissionIntake::SubmitEvilURL(const Text& text) noexcept {
    Trap(
        [&] {
            // Lets several URLs through at once, for testing.
            const bool quiet = m_Host.Setting("MAIN", "ConfirmSubmission", "1") == "0" && m_Host.IsDebugMode();
            Text cleaned = RemoveAll(TrimBlanks(text), "\r");
            while (cleaned.ends_with('\n')) cleaned.pop_back();
            const std::vector<Text> lines = Split(cleaned, '\n');
            if (lines.size() > 1 && !quiet) {
                return m_Host.Inform("Please submit URLS individually as a single line of text: \r\n" + cleaned);
            }
            if (!m_Host.IsDebugMode() && !BeginsWithHttp(cleaned)) {
                return m_Host.Inform("Please submit URLS beginning with 'http://' or 'https://': \r\n" + cleaned);
            }
            const auto said = GetSubmissionQualifiers(text);
            if (!said) return m_Host.Inform(Canceling, "URL Submission");
            std::vector<Text> repeated;
            for (const Text& line : lines) SubmitLine(line, *said, repeated);
            if (repeated.empty()) return;
            const Text message = "Previously submitted URLS: " + Join(repeated, ", ");
            if (m_Host.Setting("MAIN", "ConfirmSubmission", "0") == "1") {
                ShowMessage(m_Host.Program(), message, 0);
            } else {
                m_Host.Log(message);
            }
            m_Host.TrimMemory();
        },
        m_Host.DropFailure("Error Submit URL: "));
}

void SubmissionIntake::SubmitLine(Text line, const SubmissionQualifiers& said, std::vector<Text>& repeated) {
    if (!BeginsWithHttp(line)) line.insert(0, "http://");
    while (line.ends_with('/')) line.pop_back();
    const Text mainUrl = m_Store.GetMainURL(line);
    if (m_Store.Exists(line) || m_Store.Exists(mainUrl) || line.size() > LongestURL) {
        repeated.push_back(std::move(line));
    } else {
        Enqueue(".U", UrlQueueText(said, mainUrl, line));
    }
}

std::optional<SubmissionQualifiers> SubmissionIntake::GetSubmissionQualifiers(const Text& caption) noexcept {
    // Given also when they could not be remembered.
    std::optional<SubmissionQualifiers> said;
    Trap(
        [&] {
            App& app = m_Host.Program();
            const OpenDialog open(app);
            QualifiersDialog dialog(app, m_Host.Service.Log);
            // Reference data that came later than this object bring others.
            if (app.Settings) m_Categories = app.Settings->TryGlobalsSection("CATEGORIES");
            dialog.Setup(m_Categories, caption, m_Host.Setting("SubCat", "LastCategoryID", "2"),
                         m_Host.Setting("SubCat", "LastConfidenceID", "3"));
            m_Qualifiers.ShowModal(dialog, RestoreWindowPosition(app, "SubCat", m_Qualifiers.Extent(dialog)));
            const auto remember = [&](TextView key, const Text& value) {
                if (app.Settings) app.Settings->WriteXMLString("SubCat", key, value);
            };
            if (dialog.Result == 1) {
                said = {dialog.CategoryID, dialog.ConfidenceID};
                remember("LastCategoryID", std::to_string(dialog.CategoryID));
                remember("LastConfidenceID", std::to_string(dialog.ConfidenceID));
            }
            remember("LastTop", ToText(static_cast<double>(dialog.LastTop)));
            remember("LastLeft", ToText(static_cast<double>(dialog.LastLeft)));
        },
        m_Host.DropFailure("Error Get Submission Qualifiers: "));
    return said;
}

void SubmissionIntake::Enqueue(const Text& extension, const Text& content) {
    const auto name = [&](std::int16_t number) { return std::to_string(number) + extension; };
    // A store that could not be saved, or was lost, counts anew: what waits under such a number must not be replaced.
    m_Store.SkipTakenIDs([&](std::int16_t number) { return m_Queue.Holds(name(number)); });
    if (const auto number = m_Store.NextSubmissionID()) m_Queue.Add(name(*number), content);
}

}  // namespace tb
