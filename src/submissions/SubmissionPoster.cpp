#include "submissions/SubmissionPoster.h"

#include <algorithm>

#include "base/codepage.h"
#include "base/numbers.h"
#include "sitedb/codec/Base64.h"
#include "sitedb/codec/StringBuilder.h"
#include "sitedb/codec/UrlEncode.h"
#include "submissions/Blanks.h"
#include "submissions/CEmailMessage.h"
#include "urlcheck/url/NormalizeIP.h"

namespace tb {

namespace {

constexpr TextView Refusal = "-1";
// Failures of one run of the program after which a file is put aside.
constexpr std::int16_t LastTry = 6;
constexpr std::int16_t Pending = 1;

bool IsRefusal(TextView reply) { return reply.starts_with(Refusal); }

}  // namespace

void SubmissionPoster::ProcessSubmissions() noexcept {
    // A drop can ask for a run while one waits for a server; what it queued is sent by the run that is under way.
    m_ProcessAgain = true;
    if (m_IsProcessing) return;
    m_IsProcessing = true;
    Trap([&] { ProcessFiles(); }, m_Host.LogFailure("Error Submission ProcessSubmissions: "));
    m_IsProcessing = false;
}

void SubmissionPoster::ProcessFiles() {
    const std::unique_ptr<Sender> sender = m_Host.Service.MakeSender();
    sender->Key(GetClientKey(m_Host.Program(), false));
    sender->ReplyLimit(Sender::SmallReplyLimit);
    const ElementPtr server = m_Host.Service.Servers("SUBDBSVR");
    if (!server) return;
    std::set<std::filesystem::path> visited;
    while (m_ProcessAgain) {
        m_ProcessAgain = false;
        // Taken before any work: files go meanwhile.
        const std::vector<std::filesystem::path> names = m_Queue.List();
        ForgetAnswered(names);
        for (const std::filesystem::path& name : names) {
            // Without settings the program is about to end.
            if (!m_Host.Program().Settings) return;
            if (!visited.insert(name).second) continue;
            m_Host.Log("Processing Submission File " + PathText(name));
            const Text extension = UpperCase(GetFileExtension(PathText(name)));
            if (extension == "E") SendEmailSubmission(*sender, server, name);
            if (extension == "U") SendURLSubmission(*sender, server, name);
        }
    }
}

// A file that somebody else has removed may come again under its name with other content.
void SubmissionPoster::ForgetAnswered(const std::vector<std::filesystem::path>& names) {
    std::erase_if(m_Answered, [&](const std::filesystem::path& file) {
        return !std::binary_search(names.begin(), names.end(), file);
    });
}

Text SubmissionPoster::GetFileExtension(const Text& fileName) const noexcept {
    return TrapOr(
        Text(), [&] { return FileExtension(fileName); }, m_Host.LogFailure("Error Submission Get File Extension: "));
}

std::optional<QueueText> SubmissionPoster::ReadQueueFile(const std::filesystem::path& file) noexcept {
    return TrapOr(
        std::optional<QueueText>(),
        [&] {
            const Text text = m_Queue.Read(file);
            if (text.find("\r\n") == Text::npos) m_Host.ShowStop("Error with submission & readfile");
            return ReadQueueText(text);
        },
        m_Host.LogFailure("Error Submissions ReadFile: "));
}

Text SubmissionPoster::PostBegin(const Text& kind, const SubmissionQualifiers& said) const {
    return "TRN=" + kind + "&Key=" + GetClientKey(m_Host.Program(), true) +
           "&Category_ID=" + std::to_string(said.CategoryID) + "&Confidence_ID=" + std::to_string(said.ConfidenceID);
}

void SubmissionPoster::SendEmailSubmission(Sender& sender, const ElementPtr& server,
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
                return m_Host.Log("Error parsing email, moving to error directory: " + name);
            }
            m_Host.Log("Submission is Email: " + mail.Subject());
            StringBuilder post;
            post.Append(PostBegin("EML", queued->Said));
            post.Append("&From=" + UrlEncode(mail.From()));
            post.Append("&Subject=" + UrlEncode(mail.Subject()));
            post.Append("&Header=" + UrlEncode(mail.Headers()));
            post.Append("&Body64=" + UrlEncode(TextToBase64(mail.MessageBody())));
            Send(sender, server, "SubmitEmail.aspx", post.ToString(),
                 {file, name, "EMAIL", mail.Subject(), queued->Key, mail.From() + " " + mail.Subject()});
        },
        [&](const RuntimeError& error) {
            m_Host.Log("Error submitting email to web service, moving to error directory: " + name + " " +
                       error.Description);
        });
}

void SubmissionPoster::SendURLSubmission(Sender& sender, const ElementPtr& server,
                                         const std::filesystem::path& file) noexcept {
    const Text name = PathText(file);
    Trap(
        [&] {
            if (FinishAnswered(file)) return;
            std::optional<QueueText> queued = ReadQueueFile(file);
            if (!queued) return;
            m_Host.Log("Submitting URL: " + queued->Content);
            const Text url =
                NormalizeIP(queued->Content, [this](const Text& line) { m_Host.Log(line, LogLevel::Debug); });
            const Text post = PostBegin("URL", queued->Said) + "&Visible_URL=" + UrlEncode(url) +
                              "&Main_URL=" + UrlEncode(queued->Key);
            Send(sender, server, "SubmitURL.aspx", post,
                 {file, name, "URL", m_Store.GetMainURL(url), queued->Key, url});
        },
        [&](const RuntimeError& error) {
            m_Host.Log("Error submitting URL to web service, moving to error directory: " + name + " " +
                       error.Description);
        });
}

void SubmissionPoster::Send(Sender& sender, const ElementPtr& server, const Text& page, const Text& post,
                            const Outgoing& sent) {
    if (m_Host.Setting("MAIN", "BlockSendSubmission", "0") != "0") {
        const std::int32_t answer =
            ShowMessage(m_Host.Program(), "File: " + sent.Name + "\r\n" + ReplaceAll(post, "&", "\r\n"),
                        MessageButtons::YesNo | MessageButtons::Question, "Send to Web Service");
        if (answer != AnswerYes) {
            m_Host.Log("Deleting file for testing " + sent.Name, LogLevel::Debug);
            return Remove(sent.File);
        }
    }
    Text reply;
    const Text error = sender.PostRequest(server, page, post, reply, "");
    if (!error.empty()) m_Host.Log("***Server Error Submitting URL to Web Service: " + error, LogLevel::Debug);
    HandleReply(sent, reply, error);
}

void SubmissionPoster::HandleReply(const Outgoing& sent, const Text& reply, const Text& error) {
    // The first test is on the reply as it came, the second without blanks around it.
    if (error.empty() && !IsRefusal(reply)) {
        UpdateSubmissionsStatus(sent, reply);
        ClearSubmissionRetry(sent.File);
    } else if (IsRefusal(TrimBlanks(reply))) {
        HandleRefusal(sent, reply);
    } else {
        HandleFailure(sent, reply, error);
    }
}

void SubmissionPoster::UpdateSubmissionsStatus(const Outgoing& sent, const Text& reply) noexcept {
    Trap(
        [&] {
            if (reply.empty() || reply.starts_with("Error")) return;
            m_Host.Log("Update Submission: " + reply, LogLevel::Debug);
            if (m_Host.Setting("MAIN", "ConfirmSubmission", "0") == "1") {
                m_Host.Inform("Thank you for your submission: \r\n    '" + sent.Body + "'");
            }
            const bool added = m_Store.Add(sent.ElementName, sent.Body, reply.substr(0, reply.find(' ')), Pending,
                                           m_Host.Now(), sent.UniqueKey);
            // The file goes all the same; the line is what is left of it.
            if (!added) m_Host.Log("Deleting submission without identifier: " + sent.Description + " " + reply);
            // From here on only saving and deleting is left, whatever fails: the service must not get it again.
            m_Answered.insert(sent.File);
            m_Store.Save(false);
            m_Redisplay.Raise();
            if (!m_Store.IsUnsaved()) Remove(sent.File);
            m_Host.TrimMemory();
        },
        m_Host.LogFailure("Error Submissions Update Submissions Status: "));
}

bool SubmissionPoster::FinishAnswered(const std::filesystem::path& file) {
    if (m_Answered.count(file) == 0) return false;
    // The file is what is left of a submission that the store on the disk does not have.
    if (m_Store.IsUnsaved()) m_Store.Save(false);
    if (!m_Store.IsUnsaved()) Remove(file);
    return true;
}

void SubmissionPoster::HandleFailure(const Outgoing& sent, const Text& reply, const Text& error) {
    const Text line = (sent.IsEmail() ? "Error submitting email: " : "Error submitting URL: ") + error + " " + reply;
    m_Host.Log(line);
    if (AddSubmissionRetry(sent.File) < LastTry) return;
    m_Queue.SetAside(sent.File);
    if (sent.IsEmail()) {
        m_Host.Log(line);
        ShowMessage(m_Host.Program(), line, 0);
    } else {
        m_Host.Log("Error submitting URL to web service, moving to error directory: " + sent.Name + " " + error + " " +
                   reply);
    }
    ClearSubmissionRetry(sent.File);
}

void SubmissionPoster::HandleRefusal(const Outgoing& sent, const Text& reply) {
    const TextView trimmed = TrimBlanks(reply);
    const Text said(TrimBlanks(trimmed.substr(std::min(trimmed.size(), Refusal.size() + 1))));
    if (!said.empty()) m_Host.Inform(said);
    m_Host.Log((sent.IsEmail() ? "Deleting submission email (Code -1): " : "Deleting URL (Code -1): ") +
               sent.Description + " " + reply);
    m_Answered.insert(sent.File);
    Remove(sent.File);
}

// Nothing that is known of the file holds for another one of its name.
void SubmissionPoster::Remove(const std::filesystem::path& file) {
    m_Queue.Delete(file);
    m_Answered.erase(file);
    ClearSubmissionRetry(file);
}

std::int16_t SubmissionPoster::AddSubmissionRetry(const std::filesystem::path& file) {
    std::int16_t& count = m_RetryTable[file];
    count = NarrowToInt16(count + 1);
    return count;
}

}  // namespace tb
