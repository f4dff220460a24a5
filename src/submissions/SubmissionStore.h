// What the service has accepted, newest first, and the number of the next queue file: a list in memory, and on the disk
// the file Data\submissions.xml. Where an operation fails, a message with the stop icon says so and the result is the
// neutral one. Format: docs/formats/submissions.md.
#pragma once

#include <functional>
#include <optional>

#include "submissions/SubmissionHost.h"
#include "submissions/SubmissionItems.h"

namespace tb {

class SubmissionStore {
public:
    // Empty. `host` outlives the object.
    explicit SubmissionStore(const SubmissionHost& host);

    // Loads the file, or makes it, leaves out what is older than the setting allows, and brings an older format up to
    // date. A failure leaves what was loaded up to there.
    void Setup() noexcept;
    // Writes the file, old or new at any moment; with `reverse` from the last to the first, as an older file is turned
    // around. A file that did not load is first copied to its name and ".bad"; without that copy nothing is written.
    void Save(bool reverse) noexcept;
    // The last Save failed: the list in memory has not reached the disk.
    bool IsUnsaved() const { return m_IsUnsaved; }

    // Adds a submission in front, with its identifier enciphered and the disposition "1". Does not save. False for an
    // identifier that is none: nothing is added.
    bool Add(const Text& name, const Text& body, const Text& id, std::int16_t status, const Date& date,
             const Text& uniqueKey) noexcept;
    // By position from 1.
    void Delete(std::int32_t index) noexcept;
    // Of the submission with this enciphered identifier; nothing on an empty list. Does not save.
    void UpdateStatus(const Text& id, const Text& status, const Text& disposition) noexcept;

    std::int32_t Count() const noexcept { return m_Items.Count(); }
    // Some submission has exactly this body, or this unique key.
    bool Exists(const Text& body) const noexcept;
    bool UniqueKeyExists(const Text& key) const noexcept;
    // Chooses, by position from 1, what Body, Name and GetAttributeValue read; nothing is checked.
    void MoveToItem(std::int32_t index) noexcept { m_CurrentItem = index; }
    Text Body() const noexcept;
    Text Name() const noexcept;
    Text GetAttributeValue(const Text& attributeName) const noexcept;

    // The number of the next queue file; saves. Nothing when the numbers have run out.
    std::optional<std::int16_t> NextSubmissionID() noexcept;
    // Goes on to the next number that is not taken. Does not save. Raises 6 when the numbers have run out.
    void SkipTakenIDs(const std::function<bool(std::int16_t)>& isTaken);

    // The time of the last status update as the file tells it; setting it does not save.
    Text LastUpdateDate() const noexcept;
    void LastUpdateDate(const Text& date) { m_LastUpdateDate = date; }

    // Sum of the characters' codes: equal for texts of the same characters in any order.
    std::int32_t CalcFingerPrint(TextView text) const noexcept;
    // What stands before the first "?".
    Text GetMainURL(const Text& url) const noexcept;
    // Between the service's identifier and its stored form. These two raise what submissions/SubmissionIds.h tells.
    Text EncryptSubID(const Text& id) const;
    Text DecryptSubID(const Text& id) const;

private:
    void LoadItems(const Element& root, std::optional<std::int64_t> daysKept);
    void LoadItem(const ElementPtr& element, std::optional<std::int64_t> daysKept);
    Text FileText(bool reverse) const;
    Text Printed(const Date& date) const;

    const SubmissionHost& m_Host;
    const std::filesystem::path m_File;
    SubmissionItems m_Items;
    std::int32_t m_CurrentItem = 0;
    std::int16_t m_LastSubmissionIDValue = 0;
    Text m_LastUpdateDate;
    Text m_Version;
    // The file is one that did not load, and no copy of it has been made.
    bool m_KeepBadFile = false;
    bool m_IsUnsaved = false;
};

}  // namespace tb
