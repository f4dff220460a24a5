// Everything that the user has handed in: takes drops, keeps them as queue files until the service has answered, posts
// them, and holds the list of what the service has accepted.
// Thread: the user-interface thread. Messages, the dialog and posts serve messages while they wait, so any operation
// may run inside another; none keeps an index or a pointer into the list across such a wait. The object must be made
// with std::make_shared: it stays while DoDrop, SubmitEvilURL or ProcessSubmissions runs, though its owner drops it.
// Formats: docs/formats/submissions.md, queue-file.md, submission-exchange.md.
#pragma once

#include <map>
#include <optional>
#include <set>

#include "base/errors.h"
#include "base/event.h"
#include "refdata/ServiceAccess.h"
#include "submissions/DropData.h"
#include "submissions/QualifiersDialog.h"
#include "submissions/QueueFile.h"
#include "submissions/SubmissionItems.h"
#include "submissions/SubmissionQueue.h"

namespace tb {

class SubmissionDB : public std::enable_shared_from_this<SubmissionDB> {
public:
    // All of it outlives the object, but for the program's settings.
    struct Parts {
        ServiceAccess Service;
        ClipboardFormats& Formats;
        QualifiersView& Qualifiers;
    };

    // Registers the formats and takes the categories of the reference data, as each dialog does again.
    explicit SubmissionDB(Parts parts);
    SubmissionDB(const SubmissionDB&) = delete;
    SubmissionDB& operator=(const SubmissionDB&) = delete;

    const ClipboardFormat cfFileContents;
    const ClipboardFormat cfFileGroupDescriptor;
    const ClipboardFormat cfInternetMessage;

    // Every line for the log.
    Event<Text, LogLevel> LogMessage;
    // The list has changed.
    Event<> RedisplaySubmissions;

    // --- The store. Where an operation fails, a message with the stop icon says so and the result is the neutral one.

    // Loads the file, or makes it, leaves out what is older than the setting allows, and brings an older format up to
    // date. A failure leaves what was loaded up to there.
    void Setup() noexcept;
    // Adds a submission in front, with its identifier enciphered and the disposition "1". Does not save. Nothing is
    // added for an identifier that is none.
    void Add(const Text& name, const Text& body, const Text& id, std::int16_t status, const Date& date,
             const Text& uniqueKey) noexcept {
        TryAdd(name, body, id, status, date, uniqueKey);
    }
    // By position from 1.
    void Delete(std::int32_t index) noexcept;
    // Chooses what Body, Name and GetAttributeValue read; nothing is checked.
    void MoveToItem(std::int32_t index) noexcept { m_CurrentItem = index; }
    // Some submission has exactly this body, or this unique key.
    bool Exists(const Text& body) const noexcept;
    bool UniqueKeyExists(const Text& key) const noexcept;
    // Writes the file, old or new at any moment; with `reverse` from the last to the first, as an older file is turned
    // around. A file that did not load is first copied to its name and ".bad"; without that copy nothing is written.
    void Save(bool reverse) noexcept;
    // Sum of the characters' codes: equal for texts of the same characters in any order.
    std::int32_t CalcFingerPrint(TextView text) const noexcept;
    // What stands before the first "?".
    Text GetMainURL(const Text& url) const noexcept;
    // The number of the next queue file; saves. 0 when the numbers have run out, which a message tells.
    std::int16_t LastSubmissionID() noexcept { return NextSubmissionID().value_or(0); }
    // The time of the last status update as the file tells it; setting it does not save.
    Text LastUpdateDate() const noexcept;
    void LastUpdateDate(const Text& date) { m_LastUpdateDate = date; }
    Text Body() const noexcept;
    Text Name() const noexcept;
    std::int32_t Count() const noexcept { return m_Items.Count(); }
    Text GetAttributeValue(const Text& attributeName) const noexcept;
    // Of the submission with this enciphered identifier; nothing on an empty list. Does not save.
    void UpdateStatus(const Text& id, const Text& status, const Text& disposition) noexcept;
    // Between the service's identifier and its stored form. These two raise what submissions/SubmissionIds.h tells.
    Text EncryptSubID(const Text& id) const;
    Text DecryptSubID(const Text& id) const;

    // --- Drops. A failure is a message with the stop icon; what was queued up to there stays queued.

    // Takes what was dropped: a mail, stored messages, or a URL; asks the user about each and writes queue files.
    void DoDrop(DropData& dropped) noexcept;
    // The same for a URL; outside debug mode a single one that begins with "http".
    void SubmitEvilURL(const Text& text) noexcept;
    // How many stored messages the object holds.
    std::int32_t GetMessageCount(NativeData* native) noexcept;

    // --- Transport.

    // What waits to be sent.
    SubmissionQueue& Queue() { return m_Queue; }
    // Posts every queue file once and does what the service's answer says. A call while one runs makes that one look
    // for new files when it is through. A failure is one line; the file stays.
    void ProcessSubmissions() noexcept;

private:
    struct Outgoing;

    // The store.
    bool TryAdd(const Text& name, const Text& body, const Text& id, std::int16_t status, const Date& date,
                const Text& uniqueKey) noexcept;
    void LoadItems(const Element& root, std::optional<std::int64_t> daysKept);
    void LoadItem(const ElementPtr& element, std::optional<std::int64_t> daysKept);
    Text FileText(bool reverse) const;
    std::optional<std::int16_t> NextSubmissionID() noexcept;

    // Drops.
    void ProcessDataObject(NativeData* native, DropData& dropped) noexcept;
    void GetMessage(NativeData* native, std::int32_t index, Text& headers, Text& body) noexcept;
    NativeData* iDataObjectFromData(DropData& dropped) noexcept;
    void SubmitEvilEmail(Text& headers, const Text& body) noexcept;
    void SubmitLine(Text line, const SubmissionQualifiers& said, std::vector<Text>& repeated);
    bool GetSubmissionQualifiers(SubmissionQualifiers& said, const Text& caption) noexcept;
    void WriteQueueFile(const Text& extension, const Text& content);
    void ShowNotUnderstood() const;

    // Transport.
    void ProcessFiles();
    void ForgetAnswered(const std::vector<std::filesystem::path>& names);
    void SendEmailSubmission(Sender& sender, const ElementPtr& server, const std::filesystem::path& file) noexcept;
    void SendURLSubmission(Sender& sender, const ElementPtr& server, const std::filesystem::path& file) noexcept;
    std::optional<QueueText> ReadQueueFile(const std::filesystem::path& file) noexcept;
    void Send(Sender& sender, const ElementPtr& server, const Text& page, const Text& post, const Outgoing& sent);
    Text PostBegin(TextView kind, const SubmissionQualifiers& said) const;
    void HandleReply(const Outgoing& sent, const Text& reply, const Text& error);
    void UpdateSubmissionsStatus(const Outgoing& sent, const Text& reply) noexcept;
    void HandleFailure(const Outgoing& sent, const Text& reply, const Text& error);
    void HandleRefusal(const Outgoing& sent, const Text& reply);
    bool FinishAnswered(const std::filesystem::path& file);
    std::int16_t AddSubmissionRetry(const std::filesystem::path& file);
    void ClearSubmissionRetry(const std::filesystem::path& file) { m_RetryTable.erase(file); }
    Text GetFileExtension(const Text& fileName) const noexcept;

    const App& Program() const { return m_Parts.Service.Program; }
    Files& Storage() const { return Program().System.Files; }
    bool IsDebugMode() const;
    // The default also once the program has let go of its settings.
    Text Setting(TextView section, TextView key, const Text& otherwise) const;
    void Log(const Text& message, LogLevel level = LogLevel::Always) const { LogMessage.Raise(message, level); }
    void ShowStop(const Text& message) const noexcept;
    // Handlers of traps: a message with the error's number, a message without, a line.
    auto StoreFailure(const char* prefix) const {
        return [this, prefix](const RuntimeError& error) { ShowStop(prefix + error.Line()); };
    }
    auto DropFailure(const char* prefix) const {
        return [this, prefix](const RuntimeError& error) { ShowStop(prefix + error.Description); };
    }
    auto LogFailure(const char* prefix) const {
        return [this, prefix](const RuntimeError& error) { Log(prefix + error.Description); };
    }

    Parts m_Parts;
    SubmissionQueue m_Queue;
    std::filesystem::path m_File;

    std::int32_t m_CurrentItem = 0;
    std::int16_t m_LastSubmissionIDValue = 0;
    Text m_LastUpdateDate;
    Text m_Version;
    SubmissionItems m_Items;
    ElementPtr m_Categories;
    // Failures by queue file, of this run of the program.
    std::map<std::filesystem::path, std::int16_t> m_RetryTable;

    // The file is one that did not load, and no copy of it has been made.
    bool m_KeepBadFile = false;
    // The list has not reached the disk.
    bool m_IsUnsaved = false;
    // Queue files with a final answer that are still there: they are never posted again, only saved and deleted.
    std::set<std::filesystem::path> m_Answered;
    bool m_IsProcessing = false;
    bool m_ProcessAgain = false;
};

}  // namespace tb
