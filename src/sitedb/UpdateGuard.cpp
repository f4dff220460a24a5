#include "sitedb/UpdateGuard.h"

#include <algorithm>

#include "base/errors.h"
#include "platform/AtomicWrite.h"
#include "sitedb/SnapshotFile.h"

namespace tb {

namespace {

constexpr const char* RecordName = "ListGuard.bin";
// Stamps are of GMT, the clock is local, and no zone is further behind GMT.
constexpr std::int64_t FurthestBehind = 12 * std::int64_t{3600};
// So far a stamp may be ahead, and so long a service must insist.
constexpr std::int64_t Patience = Date::SecondsPerDay;
constexpr std::int64_t DaysRemembered = 7;

// The moment of a stamp, and nothing else; none when it is no date.
std::optional<Date> MomentOf(TextView stamp) {
    return TrapOr(
        std::optional<Date>(), [&] { return IsStamp(stamp) ? std::optional(StampToDate(stamp)) : std::nullopt; },
        [](const RuntimeError&) { /* no date: that is the answer */ });
}

}  // namespace

UpdateGuard::UpdateGuard(Files& files, Clock& clock, const std::filesystem::path& folder, const Text& buildStamp)
    : m_Files(files), m_Clock(clock), m_File(folder / RecordName), m_Build(MomentOf(buildStamp)) {}

void UpdateGuard::Load() {
    Trap(
        [&] {
            DropUnfinished(m_Files, m_File);
            if (!IsClockBelieved()) {
                Log("MalDB.Guard: The clock tells " + FormatDateTime(m_Clock.Now()) +
                    ", which is before this program was built; stamps are not checked");
            }
            if (!m_Files.Exists(m_File)) return;
            m_Saved = ReadWholeFile(m_Files, m_File);
            if (auto record = GuardRecord::Read(m_Saved)) {
                m_Record = std::move(*record);
            } else {
                Log("MalDB.Guard: " + Text(RecordName) + " is damaged and begun anew");
            }
        },
        [&](const RuntimeError& error) { Log("Malicious Database Guard Error: " + error.Line()); });
}

Date UpdateGuard::LatestNow() const { return m_Clock.Now().PlusSeconds(FurthestBehind); }

bool UpdateGuard::IsClockBelieved() const { return !m_Build || LatestNow() >= *m_Build; }

bool UpdateGuard::IsPlausible(TextView stamp) const {
    const std::optional<Date> moment = MomentOf(stamp);
    if (!moment) return false;
    if (!IsClockBelieved()) return true;
    // That of the build is before the clock, then. A clock that is late must not stop a list which goes on.
    const Date latest = std::max(LatestNow(), MomentOf(m_Record.NewestStamp).value_or(Date()));
    return *moment <= latest.PlusSeconds(Patience);
}

bool UpdateGuard::TakesStamp(TextView stamp) {
    if (IsPlausible(stamp)) {
        m_RefusalTold = false;
        return true;
    }
    const Text reason =
        MomentOf(stamp) ? "is more than a day ahead; the clock tells " + FormatDateTime(m_Clock.Now()) : "is none";
    Log("MalDB.Update: Refused, the stamp " + Quoted(stamp) + " " + reason,
        m_RefusalTold ? LogLevel::Debug : LogLevel::Always);
    m_RefusalTold = true;
    return false;
}

std::int64_t UpdateGuard::LeastKept(std::int64_t held) {
    Note(held);
    std::int64_t most = 0;
    for (const auto& [day, count] : m_Record.Days) most = std::max(most, count);
    const std::int64_t base = 2 * held >= most ? most : held;
    return base < SmallestGuarded ? 0 : (base + 1) / 2;
}

bool UpdateGuard::Passes(std::int64_t kept, std::int64_t held) {
    const bool passes = kept >= LeastKept(held);
    const Text change = std::to_string(kept) + " of " + std::to_string(held) + " entries";
    if (passes) {
        Release();
    } else if (WaitedLongEnough()) {
        Log("MalDB.Update: Taken, the service has said for a day that " + change + " stay");
        // From here on the new list is what counts.
        m_Record.HeldSince.reset();
        m_Record.Days.clear();
        m_HoldTold = false;
        return true;
    } else if (!m_HoldTold) {
        const Text since = m_Record.HeldSince ? FormatDateTime(*m_Record.HeldSince) : "when the clock is right";
        Log("MalDB.Update: Held back, " + change +
            " would stay. The list stays as it is until the service has said so for a day, counted from " + since);
        m_HoldTold = true;
    }
    Save();
    return passes;
}

void UpdateGuard::HasNothingNew(std::int64_t held) {
    m_RefusalTold = false;
    Note(held);
    Release();
    Save();
}

void UpdateGuard::Holds(const Text& stamp, std::int64_t count) {
    // While nothing is refused nothing counts as newest: it would stay so when the clock is right again.
    if (IsClockBelieved()) m_Record.NewestStamp = stamp;
    Note(count);
    Save();
}

Date UpdateGuard::Today() const {
    if (IsClockBelieved()) return m_Clock.Now().Day();
    const Date built = m_Build->Day();
    return m_Record.Days.empty() ? built : std::max(built, m_Record.Days.rbegin()->first);
}

void UpdateGuard::Note(std::int64_t count) {
    auto& days = m_Record.Days;
    const Date today = Today();
    // The clock went back: what was held then was held by today.
    for (auto later = days.upper_bound(today); later != days.end(); later = days.erase(later)) {
        count = std::max(count, later->second);
    }
    days.erase(days.begin(), days.lower_bound(today.PlusSeconds(-DaysRemembered * Date::SecondsPerDay)));
    days[today] = std::max(days[today], count);
}

bool UpdateGuard::WaitedLongEnough() {
    if (!IsClockBelieved()) return false;
    const Date now = m_Clock.Now();
    std::optional<Date>& since = m_Record.HeldSince;
    // Time that a clock takes back has not passed.
    if (!since || *since > now) since = now;
    return now.Seconds() - since->Seconds() >= Patience;
}

void UpdateGuard::Release() {
    if (m_Record.HeldSince || m_HoldTold) Log("MalDB.Update: No longer held back, the service says otherwise");
    m_Record.HeldSince.reset();
    m_HoldTold = false;
}

void UpdateGuard::Save() {
    const Text framed = m_Record.Framed();
    if (framed == m_Saved) return;
    Trap(
        [&] {
            WriteFileAtomically(m_Files, m_File, [&](FileWriter& file) { file.Write(framed); });
            m_Saved = framed;
        },
        [&](const RuntimeError& error) {
            if (framed != m_Unsaved) Log("Malicious Database Guard Error: " + error.Line());
            m_Unsaved = framed;
        });
}

}  // namespace tb
