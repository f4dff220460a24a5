#include "submissions/SubmissionDB.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "components/tbXML/XmlText.h"
#include "platform/AtomicWrite.h"
#include "platform/BadFile.h"
#include "shell/helpers/GeneralHelpers.h"
#include "sitedb/codec/Encryption.h"
#include "submissions/SubmissionIds.h"

namespace tb {

namespace {

// Of every submission that the service has not decided on.
constexpr const char* Undefined = "1";
// Numbers at which the key stream of an identifier may begin.
constexpr double OffsetRange = 10000;

}  // namespace

SubmissionDB::SubmissionDB(Parts parts)
    : cfFileContents(parts.Formats.Register("FileContents")),
      cfFileGroupDescriptor(parts.Formats.Register("FileGroupDescriptor")),
      cfInternetMessage(parts.Formats.Register("Internet Message (rfc822/rfc1522)")),
      m_Parts(parts),
      m_Queue(parts.Service.Program.System.Files, parts.Service.Program.Path() / "Data"),
      m_File(parts.Service.DataFile("submissions.xml")) {
    if (Program().Settings) m_Categories = Program().Settings->TryGlobalsSection("CATEGORIES");
}

bool SubmissionDB::TryAdd(const Text& name, const Text& body, const Text& id, std::int16_t status, const Date& date,
                          const Text& uniqueKey) noexcept {
    bool added = false;
    Trap(
        [&] {
            const Text key = EncryptSubID(id);
            auto element = std::make_shared<Element>(name, body);
            element->AddAttribute({"ID", key});
            element->AddAttribute({"Status", std::to_string(status)});
            element->AddAttribute({"Disposition", Undefined});
            element->AddAttribute({"Date", FormatDateTime(date, Program().Product.Separators)});
            element->AddAttribute({"UKey", uniqueKey});
            m_Items.AddFirst(key, std::move(element));
            added = true;
        },
        StoreFailure("Error Submissions Add: "));
    return added;
}

void SubmissionDB::Delete(std::int32_t index) noexcept {
    Trap([&] { m_Items.Remove(index); }, StoreFailure("Error Submissions Delete: "));
}

bool SubmissionDB::Exists(const Text& body) const noexcept {
    bool result = false;
    Trap([&] { result = m_Items.HasBody(body); }, StoreFailure("Error Submissions Exists: "));
    return result;
}

bool SubmissionDB::UniqueKeyExists(const Text& key) const noexcept {
    bool result = false;
    Trap([&] { result = m_Items.HasUniqueKey(key); }, StoreFailure("Error Submissions UniqueKeyExists: "));
    return result;
}

void SubmissionDB::Save(bool reverse) noexcept {
    m_IsUnsaved = true;
    Trap(
        [&] {
            const Text content = FileText(reverse);
            if (m_KeepBadFile) KeepBadFile(Storage(), m_File);
            m_KeepBadFile = false;
            WriteFileAtomically(Storage(), m_File, [&](FileWriter& writer) { writer.Write(content); });
            m_IsUnsaved = false;
        },
        StoreFailure("Error Submissions Save: "));
}

Text SubmissionDB::FileText(bool reverse) const {
    Text text = "<SubmitDB Version='" + EscapedValue(m_Version) + "' Date='" + EscapedValue(m_LastUpdateDate) +
                "' LastSubmissionID='" + std::to_string(m_LastSubmissionIDValue) + "'>\r\n";
    const std::int32_t count = m_Items.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        text += reverse ? " " : "  ";
        text += m_Items.Item(reverse ? count + 1 - index : index)->XML();
    }
    return text + "</SubmitDB>\r\n";
}

std::int32_t SubmissionDB::CalcFingerPrint(TextView text) const noexcept {
    std::int32_t result = 0;
    Trap(
        [&] {
            std::int64_t sum = 0;
            for (const char character : text) sum += static_cast<std::uint8_t>(character);
            result = NarrowToInt32(sum);
        },
        StoreFailure("Error Submissions DB FingerPrint "));
    return result;
}

Text SubmissionDB::GetMainURL(const Text& url) const noexcept {
    Text result;
    Trap([&] { result = url.substr(0, url.find('?')); }, StoreFailure("Error Submissions DB GetMainURL "));
    return result;
}

std::optional<std::int16_t> SubmissionDB::NextSubmissionID() noexcept {
    std::optional<std::int16_t> result;
    Trap(
        [&] {
            const std::int16_t held = m_LastSubmissionIDValue;
            m_LastSubmissionIDValue = NarrowToInt16(held + 1);
            Save(false);
            result = held;
        },
        StoreFailure("Error Submissions DB Get Last Submission ID "));
    return result;
}

Text SubmissionDB::LastUpdateDate() const noexcept {
    Text result;
    Trap([&] { result = m_LastUpdateDate; }, StoreFailure("Error LastUpdateDate "));
    return result;
}

Text SubmissionDB::Body() const noexcept {
    Text result;
    Trap([&] { result = m_Items.Item(m_CurrentItem)->Body(); }, StoreFailure("Error Submissions DB Get Body "));
    return result;
}

Text SubmissionDB::Name() const noexcept {
    Text result;
    Trap([&] { result = m_Items.Item(m_CurrentItem)->Name(); }, StoreFailure("Error Submissions DB Get Name: "));
    return result;
}

Text SubmissionDB::GetAttributeValue(const Text& attributeName) const noexcept {
    Text result;
    Trap([&] { result = m_Items.Item(m_CurrentItem)->FindAttributeValue(attributeName); },
         StoreFailure("Error Submissions GetAttributeValue: "));
    return result;
}

void SubmissionDB::UpdateStatus(const Text& id, const Text& status, const Text& disposition) noexcept {
    Trap(
        [&] {
            if (m_Items.Count() == 0) return;
            const ElementPtr element = m_Items.Find(id);
            element->SetAttributeValue("STATUS", status);
            element->SetAttributeValue("DISPOSITION", disposition);
        },
        StoreFailure("Error Submissions UpdateStatusID: "));
}

Text SubmissionDB::EncryptSubID(const Text& id) const {
    const std::int16_t offset = NarrowToInt16(RoundToInt32(Program().System.Random.Next() * OffsetRange));
    return EncipheredSubID(id, offset, GetScrambleKey());
}

Text SubmissionDB::DecryptSubID(const Text& id) const { return DecipheredSubID(id, GetScrambleKey()); }

bool SubmissionDB::IsDebugMode() const { return Program().Debug.IsOn(); }

Text SubmissionDB::Setting(TextView section, TextView key, const Text& otherwise) const {
    return Program().Settings ? Program().Settings->GetXMLString(section, key, otherwise) : otherwise;
}

void SubmissionDB::ShowStop(const Text& message) const noexcept {
    ShowMessage(Program(), message, MessageButtons::Critical);
}

}  // namespace tb
