// The button "cmdUpdateStatus": asks the service what became of all submissions, and shows on a lamp that it works.
// Exchange: docs/formats/submission-exchange.md.
#pragma once

#include <map>
#include <memory>

#include "submissions/SubmissionDB.h"

namespace tb {

// The panel as the update sees it.
class StatusView {
public:
    virtual ~StatusView() = default;
    // The lamp "LEDStat", visible exactly while `state` is 0.
    virtual void ShowLamp(std::int32_t state, std::int32_t blinkType, std::int32_t colour, const Text& caption) = 0;
    virtual void ShowWaitCursor(bool wait) = 0;
    virtual void PlayClickSound() = 0;
    virtual void RefreshDisplay() = 0;
};

// The counter of the program's long jobs.
class Activities {
public:
    virtual ~Activities() = default;
    // False when the job must not begin; it is then not ended either.
    virtual bool StartActivity(const Text& name, bool logIt) = 0;
    virtual void EndActivity(const Text& name, bool logIt) = 0;
};

// Must be made with std::make_shared: it stays while an update runs, though the panel closes.
class StatusUpdate : public std::enable_shared_from_this<StatusUpdate> {
public:
    // `service` and `activities` outlive the object.
    StatusUpdate(std::shared_ptr<SubmissionDB> store, ServiceAccess service, Activities& activities, StatusView& view);

    // Posts the identifiers of all submissions and takes over the reply. Serves messages while it waits; the last thing
    // it does is to end its activity, which may end the program. On a failure one line of level 0 at most one message:
    // what was applied up to there stays in memory and is not saved.
    void cmdUpdateStatus() noexcept;

    // The panel goes: nothing is shown from now on.
    void Detach() { m_View = nullptr; }

private:
    // Enciphered identifiers by plain ones.
    using IdMap = std::map<Text, Text>;
    struct Line {
        Text StoredId;
        Text Status;
        Text Disposition;
    };

    void Update();
    void PlayTheMotion();
    Text CollectIds(IdMap& ids);
    bool Exchange(Sender& sender, const Text& subIds, Text& reply);
    void Apply(const Text& reply, const IdMap& ids);
    bool Parse(TextView text, const IdMap& ids, Line& line) const;

    void ShowUpdating();
    void ShowComplete();
    void ShowWaitCursor(bool wait);
    void Pause();
    void Log(const Text& message) { m_Service.Log.WriteLog(message, LogLevel::Always); }

    const std::shared_ptr<SubmissionDB> m_Store;
    ServiceAccess m_Service;
    Activities& m_Activities;
    StatusView* m_View;
    Date m_LastUpdateAttempt{CivilDate{2000, 1, 1}};
};

}  // namespace tb
