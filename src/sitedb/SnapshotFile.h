// Snapshot files of the malicious-site list, byte by byte. Format: docs/formats/snapshot.md.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"
#include "platform/Files.h"

namespace tb {

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
    Text ReadEntry();

private:
    std::int32_t ReadNumber(size_t bytes);
    Text ReadCounted();
    void ReadBytes(char* target, size_t count);

    FileReader& m_File;
    std::uint64_t m_Left;
    std::vector<char> m_Buffer;
    size_t m_Position = 0;
    size_t m_Filled = 0;
};

// Writes in the order of the file: the header, then each entry, scrambled. Raises what writing raises.
class SnapshotWriter {
public:
    explicit SnapshotWriter(FileWriter& file) : m_File(file) {}

    void WriteHeader(const SnapshotHeader& header);
    void WriteEntry(TextView scrambled);
    // Hands the last bytes to the file.
    void Flush();

private:
    void AppendNumber(std::int32_t value, size_t bytes);
    void AppendCounted(TextView bytes);

    FileWriter& m_File;
    Text m_Buffer;
};

}  // namespace tb
