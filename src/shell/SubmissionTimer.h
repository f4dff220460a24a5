// The work of the timer tmSub: it posts what waits in the queue of submissions, every period of its own plus one tick,
// and at once when asked. With an empty queue it is off.
// Thread: the user-interface thread. A tick waits for the network and serves messages meanwhile.
#pragma once

#include "shell/Databases.h"
#include "shell/cController.h"
#include "submissions/SubmissionQueue.h"
#include "ui/window/Timer.h"

namespace tb {

class SubmissionTimer {
public:
    // All that is referred to outlives the object.
    struct Parts {
        ServiceAccess Access;
        cController& Controller;
        const Databases& Data;
        Timer& tmSub;
    };

    // The timer stays off.
    explicit SubmissionTimer(Parts parts);
    SubmissionTimer(const SubmissionTimer&) = delete;
    SubmissionTimer& operator=(const SubmissionTimer&) = delete;

    // Reads the period and turns the timer on if files wait.
    void Setup();
    // The period of the settings and the defaults data, with a share of this run's own; a line of level 1. A run that
    // was asked for comes all the same.
    void ReadPeriod();

    // Asks for a run at once.
    void DoSubmission();
    // Keeps the timer running while queue files remain; whether they do.
    bool CheckSubmissionRetry();

private:
    void Tick();
    bool IsDue();
    const App& Program() const { return m_Parts.Access.Program; }
    void Log(const Text& line, LogLevel level) { m_Parts.Access.Log.WriteLog(line, level); }

    Parts m_Parts;
    SubmissionQueue m_Queue;
    // Milliseconds.
    std::int32_t m_SubmissionPeriod = 0;
    std::int32_t m_CurrentSubmissionPeriod = 0;
    std::int32_t m_Elapsed = 0;
};

}  // namespace tb
