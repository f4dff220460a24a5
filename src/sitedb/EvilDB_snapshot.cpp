#include "base/numbers.h"
#include "platform/AtomicWrite.h"
#include "sitedb/EvilDB.h"
#include "sitedb/EvilDB_record.h"
#include "sitedb/SnapshotFile.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {

namespace {

constexpr TextView FilePrefix = "TBDB";
constexpr TextView FileExtension = ".BIN";
constexpr std::int32_t ProgressStep = 100;

// A file name as text, for comparing and for the log. Only names of plain ASCII can be snapshots.
Text NameText(const std::filesystem::path& path) {
    const std::u8string name = path.filename().u8string();
    return {name.begin(), name.end()};
}

// What stands between prefix and extension; False for a name of another form. Case does not count, as in a listing.
bool StampOfName(TextView name, Text& stamp) {
    if (name.size() < FilePrefix.size() + FileExtension.size()) return false;
    const size_t length = name.size() - FilePrefix.size() - FileExtension.size();
    if (UpperCase(Left(name, FilePrefix.size())) != FilePrefix) return false;
    if (UpperCase(name.substr(FilePrefix.size() + length)) != FileExtension) return false;
    stamp = name.substr(FilePrefix.size(), length);
    return true;
}

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
            std::int16_t attempt = 0;
            for (std::filesystem::path name; !(name = MaxFileVersion()).empty(); ++attempt) {
                if (LoadDB(m_Folder / name, attempt)) {
                    const Text outcome = m_Host.IsDebugMode() ? std::to_string(m_Count) : "OK";
                    Log("Malicious Database Load " + NameText(name) + ": " + outcome, LogLevel::Always);
                    result = true;
                    return;
                }
                Log("MalDB.RestoreDB: Corrupt file - " + NameText(name));
                m_Files.Delete(m_Folder / name);
                Corrupt = true;
            }
        },
        Failure("Malicious Database Restore Error: "));
    return result;
}

bool EvilDB::LoadDB(const std::filesystem::path& Path, std::int16_t Attempt) noexcept {
    bool result = false;
    Trap(
        [&] {
            m_Domains.RemoveAll();
            m_OpenFile.reset();
            m_OpenFile = m_Files.OpenForReading(Path);
            SnapshotReader reader(*m_OpenFile);
            const SnapshotHeader header = reader.ReadHeader();
            // Of another version, or ending too early: the file stays open, so that it is not taken for one to delete.
            // It may be the work of a newer program.
            if (header.Version != SnapshotHeader::KnownVersion) return;
            m_Count = header.EntryCount;
            LoadEntries(reader, Attempt);
            if (Attempt == 0) EvilLoadPercent.Raise(100);
            m_OpenFile.reset();
            if (Fingerprint() != header.Fingerprint || !HasStampOfItsName(Path, header.Stamp)) {
                m_Domains.RemoveAll();
                return;
            }
            m_LastTimestamp = header.Stamp;
            result = true;
        },
        Failure("Malicious Database Load Error: "));
    return result;
}

void EvilDB::LoadEntries(SnapshotReader& reader, std::int16_t Attempt) {
    for (std::int32_t done = 0; done < m_Count; ++done) {
        AddLoaded(reader.ReadEntry());
        if (Attempt == 0 && done % ProgressStep == 0) {
            EvilLoadPercent.Raise(NarrowToInt16(RoundToInt32(done * 100.0 / m_Count)));
        }
    }
}

void EvilDB::AddLoaded(const Text& entry) {
    const Record record(entry);
    if (record.FieldCount() == 3) {
        AddToDB(Text(record.Url()), Text(record.Category()), Text(record.Validated()));
    } else {
        Log("MalDB.LoadDB: bad entry (" + record.Plain() + ")");
    }
}

bool EvilDB::SaveDB(const Text& Stamp, std::int32_t Fingerprint) noexcept {
    bool saved = false;
    Trap(
        [&] {
            // A stamp comes from a service: it names a file of this folder and nothing else.
            if (Stamp.find_first_of(TextView("/\\:\0", 4)) != Text::npos) throw Error(ErrorNumber::PathFileAccess);
            const std::vector<EntryListPtr> lists =
                m_Domains.Count() == 0 ? std::vector<EntryListPtr>() : m_Domains.Values();
            std::int64_t total = 0;
            for (const EntryListPtr& list : lists) total += static_cast<std::int64_t>(list->size());
            const std::int32_t count = NarrowToInt32(total);
            WriteFileAtomically(m_Files, m_Folder / (Text(FilePrefix) + Stamp + Text(FileExtension)),
                                [&](FileWriter& file) {
                                    SnapshotWriter writer(file);
                                    writer.WriteHeader({SnapshotHeader::KnownVersion, Stamp, Fingerprint, count});
                                    for (const EntryListPtr& list : lists) {
                                        for (const Text& member : *list) writer.WriteEntry(member);
                                    }
                                    writer.Flush();
                                });
            m_Count = count;
            saved = true;
        },
        Failure("Malicious Database Save Error: "));
    return saved;
}

std::int32_t EvilDB::Fingerprint() noexcept {
    std::int32_t running = 0;
    Trap(
        [&] {
            const cCRC32 crc;
            for (const EntryListPtr& list : m_Domains.Values()) {
                for (const Text& member : *list) running = crc.GetStringCrc32(member, running);
            }
        },
        Failure("Malicious Database Fingerprint Error: "));
    return running;
}

std::filesystem::path EvilDB::MaxFileVersion() noexcept {
    std::filesystem::path largest;
    Trap(
        [&] {
            Text stamp;
            for (const std::filesystem::path& name : m_Files.List(m_Folder)) {
                if (StampOfName(NameText(name), stamp) && NameText(name) > NameText(largest)) largest = name;
            }
        },
        Failure("Malicious Database MaxFileVersion Error: "));
    return largest;
}

}  // namespace tb
