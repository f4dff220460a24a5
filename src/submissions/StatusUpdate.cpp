#include "submissions/StatusUpdate.h"

#include <algorithm>

#include "base/errors.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/SettingValues.h"

namespace tb {

namespace {

constexpr const char* ActivityName = "Updating Submission Status";
// Between two posts.
constexpr std::int64_t QuietSeconds = 90;
// How long each text is shown, and how long messages wait meanwhile.
constexpr std::int32_t PauseMilliseconds = 1200;
constexpr std::int32_t SliceMilliseconds = 50;

}  // namespace

StatusUpdate::StatusUpdate(std::shared_ptr<SubmissionDB> store, ServiceAccess service, Activities& activities,
                           StatusView& view)
    : m_Store(std::move(store)), m_Service(std::move(service)), m_Activities(activities), m_View(&view) {}

void StatusUpdate::cmdUpdateStatus() noexcept {
    const auto held = weak_from_this().lock();
    const auto failed = [&](const RuntimeError& error) {
        Log("Error Submissions Update Status: " + error.Description);
    };
    bool started = false;
    Trap(
        [&] {
            if (m_View != nullptr && IsSoundEnabled(m_Service.Program)) m_View->PlayClickSound();
            if (m_Store->Count() == 0) return;
            started = m_Activities.StartActivity(ActivityName, true);
            if (started) Update();
        },
        failed);
    if (!started) return;
    Trap(
        [&] {
            ShowWaitCursor(false);
            if (m_View != nullptr) m_View->ShowLamp(1, 0, 16, "");
        },
        failed);
    Trap([&] { m_Activities.EndActivity(ActivityName, true); }, failed);
}

void StatusUpdate::Update() {
    const App& app = m_Service.Program;
    ShowUpdating();
    const std::unique_ptr<Sender> sender = m_Service.MakeSender();
    if (!sender->IsOnline()) {
        ShowMessage(app, "Please connect to the internet to update submission status", MessageButtons::Information);
        return;
    }
    const Date now = app.System.Clock.Now();
    if (now.Seconds() - m_LastUpdateAttempt.Seconds() < QuietSeconds && !app.Debug.IsOn()) return PlayTheMotion();
    m_LastUpdateAttempt = now;
    sender->Key(GetClientKey(app, true));
    ShowWaitCursor(true);
    ShowUpdating();
    IdMap ids;
    const Text subIds = CollectIds(ids);
    Text reply;
    if (!Exchange(*sender, subIds, reply)) return;
    Apply(reply, ids);
    m_Store->LastUpdateDate(FormatDateTime(app.System.Clock.Now(), app.Product.Separators));
    m_Store->Save(false);
    if (m_View != nullptr) m_View->RefreshDisplay();
    ShowComplete();
    Pause();
}

// So that the user sees that the button was pressed.
void StatusUpdate::PlayTheMotion() {
    ShowWaitCursor(true);
    Pause();
    ShowComplete();
    Pause();
}

Text StatusUpdate::CollectIds(IdMap& ids) {
    Text list;
    for (std::int32_t index = 1; index <= m_Store->Count(); ++index) {
        m_Store->MoveToItem(index);
        const Text stored = m_Store->GetAttributeValue("ID");
        const Text plain = m_Store->DecryptSubID(stored);
        if (!list.empty()) list += ',';
        list += plain;
        if (ids.emplace(plain, stored).second) continue;
        Log("Error Update Submission Status, duplicate entry: " + stored + " " + m_Store->GetAttributeValue("Date") +
            " " + m_Store->Body());
        m_Store->Delete(index);
        --index;
    }
    return list;
}

bool StatusUpdate::Exchange(Sender& sender, const Text& subIds, Text& reply) {
    const Text post = "TRN=UPD&Key=" + GetClientKey(m_Service.Program, true) + "&SubIds=" + subIds;
    const ElementPtr server = m_Service.Servers("SUBSTATSVR");
    if (!server) return false;
    const Text error = sender.PostRequest(server, "SubmissionStatus.aspx", post, reply, "");
    if (!error.empty()) {
        // The line names the program's own error, and there is none.
        Log("Error Update Submission Status, (Sender): ");
        ShowMessage(m_Service.Program, error, 0);
        return false;
    }
    if (Left(reply, 2) == "-1") {
        Log("Error Update Submission Status, (Web Service): " + reply);
        return false;
    }
    return true;
}

void StatusUpdate::Apply(const Text& reply, const IdMap& ids) {
    const std::vector<TextView> lines = SplitViews(reply, '\n');
    Line line;
    // What stands behind the last line end is no line.
    for (size_t index = 0; index + 1 < lines.size(); ++index) {
        // An empty line repeats the one before.
        if (!Parse(lines[index], ids, line)) Log("Error Update Submission Status (Parse)");
        m_Store->UpdateStatus(line.StoredId, line.Status, line.Disposition);
    }
}

bool StatusUpdate::Parse(TextView text, const IdMap& ids, Line& line) const {
    if (text.empty()) return false;
    Text commas(text);
    std::replace(commas.begin(), commas.end(), '=', ',');
    const std::vector<Text> fields = Split(commas, ',');
    const auto found = ids.find(fields[0]);
    if (found == ids.end()) throw Error(ErrorNumber::InvalidCall);
    line = {found->second, fields.size() > 1 ? fields[1] : "1", fields.size() > 2 ? fields[2] : "1"};
    return true;
}

void StatusUpdate::ShowUpdating() {
    if (m_View != nullptr) m_View->ShowLamp(0, 1, 0, "Updating");
}

void StatusUpdate::ShowComplete() {
    if (m_View != nullptr) m_View->ShowLamp(0, 0, 16, "Update Complete");
}

void StatusUpdate::ShowWaitCursor(bool wait) {
    if (m_View != nullptr) m_View->ShowWaitCursor(wait);
}

void StatusUpdate::Pause() {
    Pump& pump = m_Service.Program.System.Pump;
    for (std::int32_t waited = 0; waited < PauseMilliseconds; waited += SliceMilliseconds) {
        pump.ProcessMessages();
        pump.Sleep(SliceMilliseconds);
    }
}

}  // namespace tb
