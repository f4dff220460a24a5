#include <algorithm>

#include "base/codepage.h"
#include "base/errors.h"
#include "shell/helpers/GeneralHelpers.h"
#include "sitedb/codec/Base64.h"
#include "sitedb/codec/StringBuilder.h"
#include "sitedb/codec/UrlEncode.h"
#include "submissions/CEmailMessage.h"
#include "submissions/SubmissionDB.h"
#include "submissions/SubmissionDB_outgoing.h"
#include "urlcheck/url/NormalizeIP.h"

namespace tb {

namespace {

template <typename... Pieces>
void AppendAll(StringBuilder& text, Pieces&&... pieces) {
    (text.Append(Text(std::forward<Pieces>(pieces))), ...);
}

Text WithLinesForAmpersands(TextView post) {
    Text lines;
    for (const char character : post) {
        if (character == '&') {
            lines += "\r\n";
        } else {
            lines += character;
        }
    }
    return lines;
}

}  // namespace

void SubmissionDB::ProcessSubmissions() noexcept {
    const auto held = weak_from_this().lock();
    // A drop can ask for a run while one waits for a server; what it queued is sent by the run that is under way.
    m_ProcessAgain = true;
    if (m_IsProcessing) return;
    m_IsProcessing = true;
    Trap([&] { ProcessFiles(); }, LogFailure("Error Submission ProcessSubmissions: "));
    m_IsProcessing = false;
}

void SubmissionDB::ProcessFiles() {
    const std::unique_ptr<Sender> sender = m_Parts.Service.MakeSender();
    sender->Key(GetClientKey(Program(), false));
    sender->ReplyLimit(Sender::SmallReplyLimit);
    const ElementPtr server = m_Parts.Service.Servers("SUBDBSVR");
    if (!server) return;
    std::set<std::filesystem::path> visited;
    while (m_ProcessAgain) {
        m_ProcessAgain = false;
        // Taken before any work: files go meanwhile.
        const std::vector<std::filesystem::path> names = m_Queue.List();
        ForgetAnswered(names);
        for (const std::filesystem::path& name : names) {
            // Without settings the program is about to end.
            if (!Program().Settings) return;
            if (!visited.insert(name).second) continue;
            Log("Processing Submission File " + PathText(name));
            const Text extension = UpperCase(GetFileExtension(PathText(name)));
            if (extension == "E") SendEmailSubmission(*sender, server, name);
            if (extension == "U") SendURLSubmission(*sender, server, name);
        }
    }
}

// A file that somebody else has removed may come again under its name with other content.
void SubmissionDB::ForgetAnswered(const std::vector<std::filesystem::path>& names) {
    for (auto file = m_Answered.begin(); file != m_Answered.end();) {
        const bool there = std::binary_search(names.begin(), names.end(), *file);
        file = there ? std::next(file) : m_Answered.erase(file);
    }
}

Text SubmissionDB::GetFileExtension(const Text& fileName) const noexcept {
    Text result;
    Trap([&] { result = FileExtension(fileName); }, LogFailure("Error Submission Get File Extension: "));
    return result;
}

std::optional<QueueText> SubmissionDB::ReadQueueFile(const std::filesystem::path& file) noexcept {
    std::optional<QueueText> result;
    Trap(
        [&] {
            const Text text = m_Queue.Read(file);
            if (text.find("\r\n") == Text::npos) ShowStop("Error with submission & readfile");
            result = ReadQueueText(text);
        },
        LogFailure("Error Submissions ReadFile: "));
    return result;
}

Text SubmissionDB::PostBegin(TextView kind, const SubmissionQualifiers& said) const {
    StringBuilder text;
    AppendAll(text, "TRN=", kind, "&", "Key=", GetClientKey(Program(), true), "&",
              "Category_ID=", std::to_string(said.CategoryID), "&", "Confidence_ID=", std::to_string(said.ConfidenceID),
              "&");
    return text.ToString();
}

void SubmissionDB::SendEmailSubmission(Sender& sender, const ElementPtr& server,
                                       const std::filesystem::path& file) noexcept {
    const Text name = PathText(file);
    Trap(
        [&] {
            if (FinishAnswered(file)) return;
            const std::optional<QueueText> queued = ReadQueueFile(file);
            if (!queued) return;
            CEmailMessage mail;
            if (!mail.CreateFromText(queued->Content)) {
                m_Queue.SetAside(file);
                return Log("Error parsing email, moving to error directory: " + name);
            }
            Log("Submission is Email: " + mail.Subject());
            StringBuilder post;
            AppendAll(post, PostBegin("EML", queued->Said), "From=", UrlEncode(mail.From()), "&",
                      "Subject=", UrlEncode(mail.Subject()), "&", "Header=", UrlEncode(mail.Headers()), "&",
                      "Body64=", UrlEncode(TextToBase64(mail.MessageBody())));
            Send(sender, server, "SubmitEmail.aspx", post.ToString(),
                 {file, name, "EMAIL", mail.Subject(), queued->Key, mail.From() + " " + mail.Subject()});
        },
        [&](const RuntimeError& error) {
            Log("Error submitting email to web service, moving to error directory: " + name + " " + error.Description);
        });
}

void SubmissionDB::SendURLSubmission(Sender& sender, const ElementPtr& server,
                                     const std::filesystem::path& file) noexcept {
    const Text name = PathText(file);
    Trap(
        [&] {
            if (FinishAnswered(file)) return;
            std::optional<QueueText> queued = ReadQueueFile(file);
            if (!queued) return;
            Log("Submitting URL: " + queued->Content);
            const Text url = NormalizeIP(queued->Content, [this](const Text& line) { Log(line, LogLevel::Debug); });
            const Text post = PostBegin("URL", queued->Said) + "Visible_URL=" + UrlEncode(url) +
                              "&Main_URL=" + UrlEncode(queued->Key);
            Send(sender, server, "SubmitURL.aspx", post, {file, name, "URL", GetMainURL(url), queued->Key, url});
        },
        [&](const RuntimeError& error) {
            Log("Error submitting URL to web service, moving to error directory: " + name + " " + error.Description);
        });
}

void SubmissionDB::Send(Sender& sender, const ElementPtr& server, const Text& page, const Text& post,
                        const Outgoing& sent) {
    if (Setting("MAIN", "BlockSendSubmission", "0") != "0") {
        const std::int32_t answer =
            ShowMessage(Program(), "File: " + sent.Name + "\r\n" + WithLinesForAmpersands(post),
                        MessageButtons::YesNo | MessageButtons::Question, "Send to Web Service");
        if (answer != AnswerYes) {
            Log("Deleting file for testing " + sent.Name, LogLevel::Debug);
            m_Queue.Delete(sent.File);
            return ClearSubmissionRetry(sent.File);
        }
    }
    Text reply;
    const Text error = sender.PostRequest(server, page, post, reply, "");
    if (!error.empty()) Log("***Server Error Submitting URL to Web Service: " + error, LogLevel::Debug);
    HandleReply(sent, reply, error);
}

}  // namespace tb
