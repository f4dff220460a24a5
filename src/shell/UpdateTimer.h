// The work of the timer tmUpdate: it trims the memory, and asks the services for what is new: the list, and behind it
// the program itself. Each comes every period of its own plus one tick.
// Thread: the user-interface thread. A tick waits for the network and serves messages meanwhile.
#pragma once

#include "refdata/UpdateCheck.h"
#include "shell/Databases.h"
#include "shell/LateDefaults.h"
#include "shell/cController.h"
#include "ui/window/Timer.h"

namespace tb {

class UpdateTimer {
public:
    // All that is referred to outlives the object.
    struct Parts {
        ServiceAccess Access;
        cController& Controller;
        LateDefaults& Late;
        const Databases& Data;
        Timer& tmUpdate;
    };

    // The timer stays off.
    explicit UpdateTimer(Parts parts);
    UpdateTimer(const UpdateTimer&) = delete;
    UpdateTimer& operator=(const UpdateTimer&) = delete;

    // Reads the periods and turns the timer on if one of its two kinds of work is on.
    void Setup();
    // The periods of the settings and the defaults data; each is a line of level 1.
    void ReadPeriods();

private:
    void Tick();
    void FreeMemoryIfDue();
    void Cycle();
    void AskServices();
    void ReportVersions();
    void CheckProgramUpdate();
    void Log(const Text& line, LogLevel level) { m_Parts.Access.Log.WriteLog(line, level); }

    Parts m_Parts;
    UpdateCheck m_Updates{m_Parts.Access};
    // Milliseconds.
    std::int32_t m_EvilDBPeriod = 0;
    std::int32_t m_FreeMemPeriod = 0;
    std::int32_t m_EvilDBElapsed = 0;
    std::int32_t m_FreeMemElapsed = 0;
    // 0 until the first report.
    Date m_LastVersionReport;
};

}  // namespace tb
