#include <cstdio>

#include "base/numbers.h"
#include "sitedb/EvilDB.h"
#include "sitedb/SnapshotFile.h"

namespace tb {

namespace {

// The stamp of a name as far as there is one: the characters behind "TBDB".
TextView StampPart(const Text& name) { return Mid(name, 5, StampLength); }

}  // namespace

std::vector<EvilDB::FileName> EvilDB::SnapshotNames() {
    std::vector<FileName> names;
    Text stamp;
    // The listing is the system's, which may match more than the name that is shown.
    for (const FileName& name : m_Files.List(m_Folder)) {
        if (StampOfName(NameText(name), stamp) && (!m_Guard || m_Guard->IsPlausible(stamp))) names.push_back(name);
    }
    return names;
}

EvilDB::FileName EvilDB::MaxFileVersion() noexcept {
    return TrapOr(
        FileName(),
        [&] {
            FileName largest;
            for (const FileName& name : SnapshotNames()) {
                if (NameText(name) > NameText(largest)) largest = name;
            }
            return largest;
        },
        Failure("Malicious Database MaxFileVersion Error: "));
}

EvilDB::FileName EvilDB::MinFileVersion(const FileName& Exclude) noexcept {
    return TrapOr(
        FileName(),
        [&] {
            FileName smallest;
            for (const FileName& name : SnapshotNames()) {
                if (name == Exclude || (m_Guard && IsInUse(name))) continue;
                if (smallest.empty() || NameText(name) < NameText(smallest)) smallest = name;
            }
            return smallest;
        },
        Failure("Malicious Database MinFileVersion Error: "));
}

bool EvilDB::IsInUse(const FileName& name) const {
    Text stamp;
    return StampOfName(NameText(name), stamp) && stamp == m_LastTimestamp;
}

void EvilDB::TellPassedOver() {
    Text stamp;
    for (const FileName& name : m_Files.List(m_Folder)) {
        if (!StampOfName(NameText(name), stamp) || m_Guard->IsPlausible(stamp)) continue;
        Log("MalDB.RestoreDB: Passed over for its stamp - " + NameText(name), LogLevel::Always);
    }
}

void EvilDB::PruneFiles(std::int16_t Keep, const Text& NewestStamp) noexcept {
    Trap(
        [&] {
            const std::vector<FileName> names = SnapshotNames();
            for (const FileName& name : names) Log("MalDB.PruneFiles: " + NameText(name));
            const FileName spared = FindRetainedFile(names, NewestStamp);
            for (auto left = static_cast<std::int64_t>(names.size()); left > Keep; --left) {
                const FileName victim = MinFileVersion(spared);
                if (victim.empty()) throw Error(ErrorNumber::FileNotFound);
                Log("MalDB.PruneFiles - Delete: " + NameText(victim));
                m_Files.ClearAttributes(m_Folder / victim);
                m_Files.Delete(m_Folder / victim);
            }
        },
        Failure("Malicious Database Prune Error: "));
}

EvilDB::FileName EvilDB::FindRetainedFile(const std::vector<FileName>& Names, const Text& NewestStamp) {
    const CivilDate moment = StampToDate(NewestStamp).PlusSeconds(-Date::SecondsPerDay).Civil();
    char cutoff[32];
    std::snprintf(cutoff, sizeof cutoff, "%04d%02d%02d%02d%02d", moment.Year, moment.Month, moment.Day, moment.Hour,
                  moment.Minute);
    FileName retained;
    Text newest;
    for (const FileName& name : Names) {
        const Text text = NameText(name);
        const TextView stamp = StampPart(text);
        if (stamp > cutoff || stamp <= newest) continue;
        newest = stamp;
        retained = name;
    }
    return retained;
}

Date EvilDB::StampToDate(TextView Stamp) { return tb::StampToDate(Stamp); }

}  // namespace tb
