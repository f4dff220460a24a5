// Snapshot files of the malicious-site list: their names, and their content byte by byte. Format:
// docs/formats/snapshot.md.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "base/text.h"
#include "platform/Files.h"

namespace tb {

// What the stamps of snapshots look like: twelve digits. Whether they are a date is not asked.
inline constexpr size_t StampLength = 12;
// The one that asks a service for everything.
inline constexpr const char* NoDataStamp = "200001010000";
bool IsStamp(TextView text);
// The moment of a stamp. Raises error 13 when it does not begin with the twelve digits of one.
Date StampToDate(TextView stamp);

// "TBDB" + stamp + ".BIN".
Text SnapshotName(const Text& stamp);
// What stands between prefix and extension; False for a name of another form. Case does not count, as in a listing.
bool StampOfName(TextView name, Text& stamp);
// A file name as text, for comparing and for the log. Only names of plain ASCII can be snapshots.
Text NameText(const std::filesystem::path& path);

struct SnapshotHeader {
    static constexpr std::int16_t KnownVersion = 1;

    std::int16_t Version = KnownVersion;
    Text Stamp;  // "YYYYMMDDHHMM", plain
    std::int32_t Fingerprint = 0;
    std::int32_t EntryCount = 0;
};

// Reads through an open file. Raises error 62 where the file ends too early or a length points beyond its end, error 5
// for a negative length or count, and what reading raises. Nothing is allocated that the file could not fill.
class SnapshotReader {
public:
    explicit SnapshotReader(FileReader& file);

    SnapshotHeader ReadHeader();
    // The next entry, scrambled as it lies in the file. The caller counts.
    Text ReadEntry() { return Text(NextEntry()); }
    // The same in the reader's own memory, until it reads again.
    TextView NextEntry() { return ReadCounted(); }

private:
    std::int32_t ReadNumber(size_t bytes);
    TextView ReadCounted();
    // The next bytes, which stay until the next call.
    const char* Take(size_t count);

    FileReader& m_File;
    std::uint64_t m_Left;
    std::vector<char> m_Buffer;
    size_t m_Position = 0;
    size_t m_Filled = 0;
};

// Writes in the order of the file: the header, then each entry, scrambled. Raises what writing raises.
class SnapshotWriter {
public:
    explicit SnapshotWriter(FileWriter& file);

    void WriteHeader(const SnapshotHeader& header);
    void WriteEntry(TextView scrambled);
    // Hands the last bytes to the file.
    void Flush();

private:
    void AppendNumber(std::int32_t value, size_t bytes);
    void AppendCounted(TextView bytes);
    void Append(TextView bytes);

    FileWriter& m_File;
    std::vector<char> m_Buffer;
    size_t m_Filled = 0;
};

}  // namespace tb
