#include <cstring>

#include "base/numbers.h"
#include "platform/AtomicWrite.h"
#include "sitedb/EvilDB.h"
#include "sitedb/SnapshotFile.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {

namespace {

constexpr std::int32_t ProgressStep = 100;

// The checksum of many short texts as that of few long ones, which is several times as fast.
class JoinedCrc {
public:
    JoinedCrc() : m_Joined(1U << 14) {}

    void Add(TextView text) {
        if (text.size() > m_Joined.size() - m_Filled) Flush();
        if (text.size() > m_Joined.size()) {
            m_Value = cCRC32().GetStringCrc32(text, m_Value);
        } else {
            std::memcpy(m_Joined.data() + m_Filled, text.data(), text.size());
            m_Filled += text.size();
        }
    }
    std::int32_t Value() {
        Flush();
        return m_Value;
    }

private:
    void Flush() {
        m_Value = cCRC32().GetStringCrc32({m_Joined.data(), m_Filled}, m_Value);
        m_Filled = 0;
    }

    std::vector<char> m_Joined;
    size_t m_Filled = 0;
    std::int32_t m_Value = 0;
};

bool HasStampOfItsName(const std::filesystem::path& path, const Text& stamp) {
    Text named;
    return !StampOfName(NameText(path), named) || named == stamp;
}

}  // namespace

bool EvilDB::RestoreDB(bool& Corrupt) noexcept {
    bool result = false;
    m_LastTimestamp = NoDataStamp;
    Corrupt = false;
    Trap(
        [&] {
            if (m_Guard) {
                m_Guard->Load();
                TellPassedOver();
            }
            std::int16_t attempt = 0;
            for (std::filesystem::path name; !(name = MaxFileVersion()).empty(); ++attempt) {
                if (LoadDB(m_Folder / name, attempt)) {
                    const Text outcome = m_Host.IsDebugMode() ? std::to_string(m_Count) : "OK";
                    Log("Malicious Database Load " + NameText(name) + ": " + outcome, LogLevel::Always);
                    result = true;
                    if (m_Guard) m_Guard->Holds(m_LastTimestamp, m_Domains.EntryCount());
                    return;
                }
                Log("MalDB.RestoreDB: Corrupt file - " + NameText(name));
                m_Files.Delete(m_Folder / name);
                Corrupt = true;
            }
        },
        Failure("Malicious Database Restore Error: "));
    // What could not be deleted has been kept. From here on an update may take its place, and pruning its turn.
    m_OpenFile.reset();
    return result;
}

bool EvilDB::LoadDB(const std::filesystem::path& Path, std::int16_t Attempt) noexcept {
    return TrapOr(
        false,
        [&] {
            m_Domains.RemoveAll();
            m_OpenFile.reset();
            m_OpenFile = m_Files.OpenForReading(Path);
            SnapshotReader reader(*m_OpenFile);
            const SnapshotHeader header = reader.ReadHeader();
            // Of another version, or ending too early: the file stays open, so that RestoreDB does not delete it. It
            // may be the work of a newer program.
            if (header.Version != SnapshotHeader::KnownVersion) return false;
            m_Count = header.EntryCount;
            LoadEntries(reader, Attempt);
            if (Attempt == 0) EvilLoadPercent.Raise(100);
            m_OpenFile.reset();
            if (Fingerprint() != header.Fingerprint || !HasStampOfItsName(Path, header.Stamp)) {
                m_Domains.RemoveAll();
                return false;
            }
            m_LastTimestamp = header.Stamp;
            return true;
        },
        Failure("Malicious Database Load Error: "));
}

void EvilDB::LoadEntries(SnapshotReader& reader, std::int16_t Attempt) {
    for (std::int32_t done = 0; done < m_Count; ++done) {
        AddLoaded(reader.NextEntry());
        if (Attempt == 0 && done % ProgressStep == 0) {
            EvilLoadPercent.Raise(NarrowToInt16(RoundToInt32(done * 100.0 / m_Count)));
        }
    }
}

bool EvilDB::SaveDB(const Text& Stamp, std::int32_t Fingerprint) noexcept {
    return TrapOr(
        false,
        [&] {
            // A stamp comes from a service: it names a file of this folder and nothing else.
            if (!IsStamp(Stamp)) throw Error(ErrorNumber::PathFileAccess);
            const std::int32_t count = LiveCount();
            WriteFileAtomically(m_Files, m_Folder / SnapshotName(Stamp), [&](FileWriter& file) {
                SnapshotWriter writer(file);
                writer.WriteHeader({SnapshotHeader::KnownVersion, Stamp, Fingerprint, count});
                m_Domains.Walk([&](TextView entry) { writer.WriteEntry(entry); });
                writer.Flush();
            });
            m_Count = count;
            return true;
        },
        Failure("Malicious Database Save Error: "));
}

std::int32_t EvilDB::Fingerprint() noexcept {
    return TrapOr(
        0,
        [&] {
            if (m_Domains.Count() == 0) throw Error(ErrorNumber::Subscript);
            JoinedCrc crc;
            m_Domains.Walk([&](TextView entry) { crc.Add(entry); });
            return crc.Value();
        },
        Failure("Malicious Database Fingerprint Error: "));
}

}  // namespace tb
