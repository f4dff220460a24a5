// Everything that the user has handed in, behind one face: the drop reader and the intake, which queue it, the poster,
// which sends it, and the store, which keeps what the service has accepted.
// Thread: the user-interface thread. Messages, the dialog and posts serve messages while they wait, so any operation
// may run inside another; none keeps an index or a pointer into the list across such a wait. The object must be made
// with std::make_shared: it stays while HandIn, DoDrop, SubmitEvilURL or ProcessSubmissions runs, though its owner
// drops it.
// Formats: docs/formats/submissions.md, queue-file.md, submission-exchange.md.
#pragma once

#include "submissions/DropReader.h"
#include "submissions/SubmissionPoster.h"

namespace tb {

class SubmissionDB : public std::enable_shared_from_this<SubmissionDB> {
public:
    // All of it outlives the object, but for the program's settings.
    struct Parts {
        ServiceAccess Service;
        ClipboardFormats& Formats;
        QualifiersView& Qualifiers;
    };

    // Registers the formats.
    explicit SubmissionDB(const Parts& parts);
    SubmissionDB(const SubmissionDB&) = delete;
    SubmissionDB& operator=(const SubmissionDB&) = delete;

    const ClipboardFormat cfFileContents;
    const ClipboardFormat cfFileGroupDescriptor;
    const ClipboardFormat cfInternetMessage;

    // Every line for the log.
    Event<Text, LogLevel> LogMessage;
    // The list has changed.
    Event<> RedisplaySubmissions;
    // Something was handed in and may wait in the queue: ProcessSubmissions shall run soon.
    Event<> RunWanted;

    // Loads the list, and clears what a program that ended in the middle of a write has left.
    void Setup() noexcept;

    // --- The way in. A failure is a message with the stop icon; what was queued up to there stays queued.

    // Takes what was dropped, as DoDrop, and raises RunWanted, unless the program has let go of its settings meanwhile:
    // then it is about to end.
    void HandIn(DropData& dropped);
    // The same for a URL, as SubmitEvilURL.
    void HandInURL(const Text& text);
    // Takes what was dropped: a mail, stored messages, or a URL; asks the user about each and queues it.
    void DoDrop(DropData& dropped) noexcept;
    // The same for a URL; outside debug mode a single one that begins with "http".
    void SubmitEvilURL(const Text& text) noexcept;
    // How many stored messages the object holds.
    std::int32_t GetMessageCount(NativeData* native) noexcept { return m_Reader.GetMessageCount(native); }

    // --- The way out.

    // What waits.
    SubmissionQueue& Queue() { return m_Queue; }
    // Posts every queue file once and does what the service's answer says. A call while one runs makes that one look
    // for new files when it is through. A failure is one line; the file stays.
    void ProcessSubmissions() noexcept;

    // --- The list, as SubmissionStore.h tells.

    void Add(const Text& name, const Text& body, const Text& id, std::int16_t status, const Date& date,
             const Text& uniqueKey) noexcept {
        m_Store.Add(name, body, id, status, date, uniqueKey);
    }
    void Delete(std::int32_t index) noexcept { m_Store.Delete(index); }
    void MoveToItem(std::int32_t index) noexcept { m_Store.MoveToItem(index); }
    bool Exists(const Text& body) const noexcept { return m_Store.Exists(body); }
    bool UniqueKeyExists(const Text& key) const noexcept { return m_Store.UniqueKeyExists(key); }
    void Save(bool reverse) noexcept { m_Store.Save(reverse); }
    std::int32_t CalcFingerPrint(TextView text) const noexcept { return m_Store.CalcFingerPrint(text); }
    Text GetMainURL(const Text& url) const noexcept { return m_Store.GetMainURL(url); }
    // 0 when the numbers have run out, which a message tells.
    std::int16_t LastSubmissionID() noexcept { return m_Store.NextSubmissionID().value_or(0); }
    Text LastUpdateDate() const noexcept { return m_Store.LastUpdateDate(); }
    void LastUpdateDate(const Text& date) { m_Store.LastUpdateDate(date); }
    Text Body() const noexcept { return m_Store.Body(); }
    Text Name() const noexcept { return m_Store.Name(); }
    std::int32_t Count() const noexcept { return m_Store.Count(); }
    Text GetAttributeValue(const Text& attributeName) const noexcept {
        return m_Store.GetAttributeValue(attributeName);
    }
    void UpdateStatus(const Text& id, const Text& status, const Text& disposition) noexcept {
        m_Store.UpdateStatus(id, status, disposition);
    }
    Text EncryptSubID(const Text& id) const { return m_Store.EncryptSubID(id); }
    Text DecryptSubID(const Text& id) const { return m_Store.DecryptSubID(id); }

private:
    void AskForRun() const;

    const SubmissionHost m_Host;
    SubmissionQueue m_Queue;
    SubmissionStore m_Store;
    SubmissionIntake m_Intake;
    DropReader m_Reader;
    SubmissionPoster m_Poster;
};

}  // namespace tb
