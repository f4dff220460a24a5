#include "base/errors.h"
#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "platform/AtomicWrite.h"
#include "platform/BadFile.h"
#include "submissions/SubmissionDB.h"

namespace tb {

namespace {

constexpr const char* CurrentVersion = "1.1";
constexpr const char* KeepForever = "Never";

}  // namespace

void SubmissionDB::Setup() noexcept {
    m_Queue.ClearLeftovers();
    DropUnfinished(Storage(), m_File);
    Trap(
        [&] {
            const Text trim = Setting("MAIN", "AutoTrimSubDays", KeepForever);
            std::optional<std::int64_t> daysKept;
            if (trim != KeepForever) daysKept = ToInt16(TextView(trim).substr(0, trim.find(' ')));
            if (!IsThere(Storage(), m_File)) {
                const Text now = FormatDateTime(Program().System.Clock.Now(), Program().Product.Separators);
                WriteFileAtomically(Storage(), m_File, [&](FileWriter& writer) {
                    writer.Write("<SubmitDB Date='" + now + "' Version='1.1'>\r\n</SubmitDB>\r\n");
                });
            }
            Document document;
            document.Load(Storage(), m_File);
            LoadItems(*document.Root(), daysKept);
        },
        [&](const RuntimeError& error) {
            m_KeepBadFile = true;
            StoreFailure("Error Submissions Setup: ")(error);
        });
}

void SubmissionDB::LoadItems(const Element& root, std::optional<std::int64_t> daysKept) {
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

void SubmissionDB::LoadItem(const ElementPtr& element, std::optional<std::int64_t> daysKept) {
    const auto value = [&](TextView name) { return element->FindAttributeValue(name); };
    const Date date = ParseDate(value("Date"));
    const std::int64_t age = Program().System.Clock.Now().Seconds() - date.Seconds();
    if (daysKept && age >= *daysKept * Date::SecondsPerDay) {
        return Log("Prune Submission: " + value("id") + " " + value("status") + " " + value("disposition") + " " +
                   value("date") + " " + value("ukey") + " " + element->Body());
    }
    Text key = value("id");
    if (m_Version.empty()) {
        key = EncryptSubID(key);
        element->SetAttributeValue("ID", key);
        if (element->Name() == "HTML") element->Name("URL");
    }
    m_Items.AddLast(key, element);
}

}  // namespace tb
