// Stands between the update service and the list: refuses stamps that lie too far ahead, and holds an update back that
// would take most of the list away, until the service has said so for a day. A service that somebody else speaks for,
// or that fell over, then costs neither the list nor its snapshots. What it knows of the clock, and what follows from
// that: docs/fail-policy.md.
#pragma once

#include <filesystem>

#include "base/event.h"
#include "base/log.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "sitedb/GuardRecord.h"

namespace tb {

// Nothing raises but lack of memory: a file that cannot be read or written gives a line.
class UpdateGuard {
public:
    // A list that never had so many entries is not held back.
    static constexpr std::int64_t SmallestGuarded = 1000;

    // Its record lies in `folder`. `buildStamp`: "YYYYMMDDHHMM" of GMT; a clock that tells less is not believed. Empty
    // when it is not known: every clock is believed then. `files` and `clock` must outlive the guard.
    UpdateGuard(Files& files, Clock& clock, const std::filesystem::path& folder, const Text& buildStamp);
    UpdateGuard(const UpdateGuard&) = delete;
    UpdateGuard& operator=(const UpdateGuard&) = delete;

    // Every line for the log.
    Event<Text, LogLevel> LogMessage;

    // Reads the record. One that is damaged counts as none.
    void Load();

    // Whether a stamp is one, and not more than a day ahead of the latest of clock, build and newest stamp taken. With
    // a clock that is not believed no stamp is too far ahead.
    bool IsPlausible(TextView stamp) const;
    // The same of the stamp of a reply. The first refusal in a row is a line of level 0.
    bool TakesStamp(TextView stamp);

    // How many of `held` entries an update must leave to be taken at once: half of the most held in the last seven
    // days, or of what is held now where that is not even half of it (a snapshot was lost, and the list must fill
    // again). 0 when the list is too small to be guarded.
    std::int64_t LeastKept(std::int64_t held);
    // Whether an update may be taken that leaves `kept` of `held` entries. Held back and let pass again give a line
    // each of level 0, once.
    bool Passes(std::int64_t kept, std::int64_t held);
    // The service says that the list is as it should be.
    void HasNothingNew(std::int64_t held);
    // The list has so many entries now, as of that stamp: from a snapshot, or from an update that was taken.
    void Holds(const Text& stamp, std::int64_t count);

private:
    bool IsClockBelieved() const;
    // The latest moment of GMT that it can be by the clock.
    Date LatestNow() const;
    Date Today() const;
    void Note(std::int64_t count);
    // True when the service has said so for long enough.
    bool WaitedLongEnough();
    void Release();
    void Save();
    void Log(const Text& message, LogLevel level = LogLevel::Always) const { LogMessage.Raise(message, level); }

    Files& m_Files;
    Clock& m_Clock;
    std::filesystem::path m_File;
    std::optional<Date> m_Build;
    GuardRecord m_Record;
    Text m_Saved;    // as it lies on the disk
    Text m_Unsaved;  // what could not be written, and the log knows it
    bool m_RefusalTold = false;
    bool m_HoldTold = false;
};

}  // namespace tb
