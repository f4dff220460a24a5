#include "submissions/SubmissionStore.h"

#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "components/tbXML/XmlText.h"
#include "platform/AtomicWrite.h"
#include "platform/BadFile.h"
#include "sitedb/codec/Encryption.h"
#include "submissions/SubmissionIds.h"

namespace tb {

namespace {

constexpr const char* CurrentVersion = "1.1";
constexpr const char* KeepForever = "Never";
// Of every submission that the service has not decided on.
constexpr const char* Undefined = "1";
// Numbers at which the key stream of an identifier may begin.
constexpr double OffsetRange = 10000;

}  // namespace

SubmissionStore::SubmissionStore(const SubmissionHost& host)
    : m_Host(host), m_File(host.Service.DataFile("submissions.xml")) {}

void SubmissionStore::Setup() noexcept {
    DropUnfinished(m_Host.Files(), m_File);
    Trap(
        [&] {
            const Text trim = m_Host.Setting("MAIN", "AutoTrimSubDays", KeepForever);
            std::optional<std::int64_t> daysKept;
            if (trim != KeepForever) daysKept = ToInt16(TextView(trim).substr(0, trim.find(' ')));
            if (!IsThere(m_Host.Files(), m_File)) {
                const Text now = Printed(m_Host.Now());
                WriteFileAtomically(m_Host.Files(), m_File, [&](FileWriter& writer) {
                    writer.Write("<SubmitDB Date='" + now + "' Version='1.1'>\r\n</SubmitDB>\r\n");
                });
            }
            Document document;
            document.Load(m_Host.Files(), m_File);
            LoadItems(*document.Root(), daysKept);
        },
        [&](const RuntimeError& error) {
            m_KeepBadFile = true;
            m_Host.StoreFailure("Error Submissions Setup: ")(error);
        });
}

void SubmissionStore::LoadItems(const Element& root, std::optional<std::int64_t> daysKept) {
    const Text number = root.FindAttributeValue("LastSubmissionID");
    m_Version = root.FindAttributeValue("Version");
    m_LastUpdateDate = root.FindAttributeValue("date");
    if (number.empty()) {
        Save(false);
    } else {
        m_LastSubmissionIDValue = ToInt16(number);
    }
    for (const ElementPtr& element : root) LoadItem(element, daysKept);
    if (m_Items.Count() != 0) m_CurrentItem = 1;
    if (m_Version.empty()) {
        m_Version = CurrentVersion;
        Save(true);
    }
}

void SubmissionStore::LoadItem(const ElementPtr& element, std::optional<std::int64_t> daysKept) {
    const auto value = [&](TextView name) { return element->FindAttributeValue(name); };
    const Date date = ParseDate(value("Date"));
    const std::int64_t age = m_Host.Now().Seconds() - date.Seconds();
    if (daysKept && age >= *daysKept * Date::SecondsPerDay) {
        return m_Host.Log("Prune Submission: " + value("id") + " " + value("status") + " " + value("disposition") +
                          " " + value("date") + " " + value("ukey") + " " + element->Body());
    }
    Text key = value("id");
    if (m_Version.empty()) {
        key = EncryptSubID(key);
        element->SetAttributeValue("ID", key);
        if (element->Name() == "HTML") element->Name("URL");
    }
    m_Items.AddLast(key, element);
}

void SubmissionStore::Save(bool reverse) noexcept {
    m_IsUnsaved = true;
    Trap(
        [&] {
            const Text content = FileText(reverse);
            if (m_KeepBadFile) KeepBadFile(m_Host.Files(), m_File);
            m_KeepBadFile = false;
            WriteFileAtomically(m_Host.Files(), m_File, [&](FileWriter& writer) { writer.Write(content); });
            m_IsUnsaved = false;
        },
        m_Host.StoreFailure("Error Submissions Save: "));
}

Text SubmissionStore::FileText(bool reverse) const {
    Text text = "<SubmitDB Version='" + EscapedValue(m_Version) + "' Date='" + EscapedValue(m_LastUpdateDate) +
                "' LastSubmissionID='" + std::to_string(m_LastSubmissionIDValue) + "'>\r\n";
    const std::int32_t count = m_Items.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        text += reverse ? " " : "  ";
        text += m_Items.Item(reverse ? count + 1 - index : index)->XML();
    }
    return text + "</SubmitDB>\r\n";
}

Text SubmissionStore::Printed(const Date& date) const {
    return FormatDateTime(date, m_Host.Program().Product.Separators);
}

bool SubmissionStore::Add(const Text& name, const Text& body, const Text& id, std::int16_t status, const Date& date,
                          const Text& uniqueKey) noexcept {
    return TrapOr(
        false,
        [&] {
            const Text key = EncryptSubID(id);
            auto element = std::make_shared<Element>(name, body);
            element->AddAttribute({"ID", key});
            element->AddAttribute({"Status", std::to_string(status)});
            element->AddAttribute({"Disposition", Undefined});
            element->AddAttribute({"Date", Printed(date)});
            element->AddAttribute({"UKey", uniqueKey});
            m_Items.AddFirst(key, std::move(element));
            return true;
        },
        m_Host.StoreFailure("Error Submissions Add: "));
}

void SubmissionStore::Delete(std::int32_t index) noexcept {
    Trap([&] { m_Items.Remove(index); }, m_Host.StoreFailure("Error Submissions Delete: "));
}

void SubmissionStore::UpdateStatus(const Text& id, const Text& status, const Text& disposition) noexcept {
    Trap(
        [&] {
            if (m_Items.Count() == 0) return;
            const ElementPtr element = m_Items.Find(id);
            element->SetAttributeValue("STATUS", status);
            element->SetAttributeValue("DISPOSITION", disposition);
        },
        m_Host.StoreFailure("Error Submissions UpdateStatusID: "));
}

bool SubmissionStore::Exists(const Text& body) const noexcept {
    return TrapOr(
        false, [&] { return m_Items.HasBody(body); }, m_Host.StoreFailure("Error Submissions Exists: "));
}

bool SubmissionStore::UniqueKeyExists(const Text& key) const noexcept {
    return TrapOr(
        false, [&] { return m_Items.HasUniqueKey(key); }, m_Host.StoreFailure("Error Submissions UniqueKeyExists: "));
}

Text SubmissionStore::Body() const noexcept {
    return TrapOr(
        Text(), [&] { return m_Items.Item(m_CurrentItem)->Body(); },
        m_Host.StoreFailure("Error Submissions DB Get Body "));
}

Text SubmissionStore::Name() const noexcept {
    return TrapOr(
        Text(), [&] { return m_Items.Item(m_CurrentItem)->Name(); },
        m_Host.StoreFailure("Error Submissions DB Get Name: "));
}

Text SubmissionStore::GetAttributeValue(const Text& attributeName) const noexcept {
    return TrapOr(
        Text(), [&] { return m_Items.Item(m_CurrentItem)->FindAttributeValue(attributeName); },
        m_Host.StoreFailure("Error Submissions GetAttributeValue: "));
}

std::optional<std::int16_t> SubmissionStore::NextSubmissionID() noexcept {
    return TrapOr(
        std::optional<std::int16_t>(),
        [&] {
            const std::int16_t held = m_LastSubmissionIDValue;
            m_LastSubmissionIDValue = NarrowToInt16(held + 1);
            Save(false);
            return held;
        },
        m_Host.StoreFailure("Error Submissions DB Get Last Submission ID "));
}

void SubmissionStore::SkipTakenIDs(const std::function<bool(std::int16_t)>& isTaken) {
    while (isTaken(m_LastSubmissionIDValue)) m_LastSubmissionIDValue = NarrowToInt16(m_LastSubmissionIDValue + 1);
}

Text SubmissionStore::LastUpdateDate() const noexcept {
    return TrapOr(
        Text(), [&] { return m_LastUpdateDate; }, m_Host.StoreFailure("Error LastUpdateDate "));
}

std::int32_t SubmissionStore::CalcFingerPrint(TextView text) const noexcept {
    return TrapOr(
        0,
        [&] {
            std::int64_t sum = 0;
            for (const char character : text) sum += static_cast<std::uint8_t>(character);
            return NarrowToInt32(sum);
        },
        m_Host.StoreFailure("Error Submissions DB FingerPrint "));
}

Text SubmissionStore::GetMainURL(const Text& url) const noexcept {
    return TrapOr(
        Text(), [&] { return url.substr(0, url.find('?')); }, m_Host.StoreFailure("Error Submissions DB GetMainURL "));
}

Text SubmissionStore::EncryptSubID(const Text& id) const {
    const std::int16_t offset = NarrowToInt16(RoundToInt32(m_Host.Program().System.Random.Next() * OffsetRange));
    return EncipheredSubID(id, offset, GetScrambleKey());
}

Text SubmissionStore::DecryptSubID(const Text& id) const { return DecipheredSubID(id, GetScrambleKey()); }

}  // namespace tb
