#include "base/errors.h"
#include "base/numbers.h"
#include "shell/helpers/GeneralHelpers.h"
#include "submissions/Blanks.h"
#include "submissions/SubmissionDB_outgoing.h"

namespace tb {

namespace {

constexpr TextView Refusal = "-1";
// Failures of one run of the program after which a file is put aside.
constexpr std::int16_t LastTry = 6;
constexpr std::int16_t Pending = 1;

}  // namespace

void SubmissionDB::HandleReply(const Outgoing& sent, const Text& reply, const Text& error) {
    // The first test is on the reply as it came, the second without blanks around it.
    if (error.empty() && Left(reply, Refusal.size()) != Refusal) {
        UpdateSubmissionsStatus(sent, reply);
        ClearSubmissionRetry(sent.File);
    } else if (Left(TrimBlanks(reply), Refusal.size()) == Refusal) {
        HandleRefusal(sent, reply);
    } else {
        HandleFailure(sent, reply, error);
    }
}

void SubmissionDB::UpdateSubmissionsStatus(const Outgoing& sent, const Text& reply) noexcept {
    Trap(
        [&] {
            if (reply.empty() || Left(reply, 5) == "Error" || Left(reply, Refusal.size()) == Refusal) return;
            Log("Update Submission: " + reply, LogLevel::Debug);
            if (Setting("MAIN", "ConfirmSubmission", "0") == "1") {
                ShowMessage(Program(), "Thank you for your submission: \r\n    '" + sent.Body + "'",
                            MessageButtons::Information);
            }
            const bool added = TryAdd(sent.ElementName, sent.Body, reply.substr(0, reply.find(' ')), Pending,
                                      Program().System.Clock.Now(), sent.UniqueKey);
            // The file goes all the same; the line is what is left of it.
            if (!added) Log("Deleting submission without identifier: " + sent.Description + " " + reply);
            // From here on only saving and deleting is left, whatever fails: the service must not get it again.
            m_Answered.insert(sent.File);
            Save(false);
            RedisplaySubmissions.Raise();
            if (!m_IsUnsaved) FinishAnswered(sent.File);
            FreeMemory(Program(), m_Parts.Service.Log);
        },
        LogFailure("Error Submissions Update Submissions Status: "));
}

bool SubmissionDB::FinishAnswered(const std::filesystem::path& file) {
    if (m_Answered.count(file) == 0) return false;
    // The file is what is left of a submission that the store on the disk does not have.
    if (m_IsUnsaved) Save(false);
    if (m_IsUnsaved) return true;
    m_Queue.Delete(file);
    m_Answered.erase(file);
    return true;
}

void SubmissionDB::HandleFailure(const Outgoing& sent, const Text& reply, const Text& error) {
    const Text line = (sent.IsEmail() ? "Error submitting email: " : "Error submitting URL: ") + error + " " + reply;
    Log(line);
    if (AddSubmissionRetry(sent.File) < LastTry) return;
    m_Queue.SetAside(sent.File);
    if (sent.IsEmail()) {
        Log(line);
        ShowMessage(Program(), line, 0);
    } else {
        Log("Error submitting URL to web service, moving to error directory: " + sent.Name + " " + error + " " + reply);
    }
    ClearSubmissionRetry(sent.File);
}

void SubmissionDB::HandleRefusal(const Outgoing& sent, const Text& reply) {
    const TextView trimmed = TrimBlanks(reply);
    const Text said(TrimBlanks(trimmed.substr(std::min(trimmed.size(), Refusal.size() + 1))));
    if (!said.empty()) ShowMessage(Program(), said, MessageButtons::Information);
    Log((sent.IsEmail() ? "Deleting submission email (Code -1): " : "Deleting URL (Code -1): ") + sent.Description +
        " " + reply);
    m_Answered.insert(sent.File);
    m_Queue.Delete(sent.File);
    m_Answered.erase(sent.File);
    ClearSubmissionRetry(sent.File);
}

std::int16_t SubmissionDB::AddSubmissionRetry(const std::filesystem::path& file) {
    std::int16_t& count = m_RetryTable[file];
    count = NarrowToInt16(count + 1);
    return count;
}

}  // namespace tb
