// Posts what waits in the queue, and does what the service's answer says: a file that was taken enters the store and
// goes, one that was refused goes, one that fails too often is put aside. Formats: docs/formats/queue-file.md,
// submission-exchange.md; what fails how: docs/fail-policy.md.
#pragma once

#include <map>
#include <optional>
#include <set>

#include "submissions/QueueFile.h"
#include "submissions/SubmissionQueue.h"
#include "submissions/SubmissionStore.h"

namespace tb {

class SubmissionPoster {
public:
    // All of it outlives the object. `redisplay` is raised when a submission has entered the store.
    SubmissionPoster(const SubmissionHost& host, SubmissionStore& store, SubmissionQueue& queue,
                     const Event<>& redisplay)
        : m_Host(host), m_Store(store), m_Queue(queue), m_Redisplay(redisplay) {}

    // Posts every queue file once. A call while one runs makes that one look for new files when it is through. A
    // failure is one line; the file stays.
    void ProcessSubmissions() noexcept;

private:
    // What is known about a queue file when its answer comes.
    struct Outgoing {
        std::filesystem::path File;
        // The file's name for lines.
        Text Name;
        // Of the entry in the store: "EMAIL" or "URL", what the user knows it by, and its unique key.
        Text ElementName;
        Text Body;
        Text UniqueKey;
        // Sender and subject, or the URL, for the line about a refusal.
        Text Description;

        bool IsEmail() const { return ElementName == "EMAIL"; }
    };

    void ProcessFiles();
    void ForgetAnswered(const std::vector<std::filesystem::path>& names);
    void SendEmailSubmission(Sender& sender, const ElementPtr& server, const std::filesystem::path& file) noexcept;
    void SendURLSubmission(Sender& sender, const ElementPtr& server, const std::filesystem::path& file) noexcept;
    Text GetFileExtension(const Text& fileName) const noexcept;
    std::optional<QueueText> ReadQueueFile(const std::filesystem::path& file) noexcept;
    Text PostBegin(const Text& kind, const SubmissionQualifiers& said) const;
    void Send(Sender& sender, const ElementPtr& server, const Text& page, const Text& post, const Outgoing& sent);

    void HandleReply(const Outgoing& sent, const Text& reply, const Text& error);
    void UpdateSubmissionsStatus(const Outgoing& sent, const Text& reply) noexcept;
    void HandleFailure(const Outgoing& sent, const Text& reply, const Text& error);
    void HandleRefusal(const Outgoing& sent, const Text& reply);
    bool FinishAnswered(const std::filesystem::path& file);
    void Remove(const std::filesystem::path& file);
    std::int16_t AddSubmissionRetry(const std::filesystem::path& file);
    void ClearSubmissionRetry(const std::filesystem::path& file) { m_RetryTable.erase(file); }

    const SubmissionHost& m_Host;
    SubmissionStore& m_Store;
    SubmissionQueue& m_Queue;
    const Event<>& m_Redisplay;
    // Failures by queue file, of this run of the program.
    std::map<std::filesystem::path, std::int16_t> m_RetryTable;
    // Queue files with a final answer that are still there: they are never posted again, only saved and deleted.
    std::set<std::filesystem::path> m_Answered;
    bool m_IsProcessing = false;
    bool m_ProcessAgain = false;
};

}  // namespace tb
