#include "sitedb/SnapshotFile.h"

#include <algorithm>
#include <cstring>

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr size_t BufferSize = 65536;

}  // namespace

SnapshotReader::SnapshotReader(FileReader& file) : m_File(file), m_Left(file.Size()), m_Buffer(BufferSize) {}

SnapshotHeader SnapshotReader::ReadHeader() {
    SnapshotHeader header;
    header.Version = static_cast<std::int16_t>(ReadNumber(2));
    header.Stamp = UnscrambleByLength(ReadCounted());
    header.Fingerprint = ReadNumber(4);
    header.EntryCount = ReadNumber(4);
    if (header.EntryCount < 0) throw Error(ErrorNumber::InvalidCall);
    return header;
}

Text SnapshotReader::ReadEntry() { return ReadCounted(); }

std::int32_t SnapshotReader::ReadNumber(size_t bytes) {
    char raw[4];
    ReadBytes(raw, bytes);
    std::uint32_t value = 0;
    for (size_t index = bytes; index-- > 0;) value = value << 8 | static_cast<std::uint8_t>(raw[index]);
    return static_cast<std::int32_t>(value);
}

Text SnapshotReader::ReadCounted() {
    const std::int32_t length = ReadNumber(4);
    if (length < 0) throw Error(ErrorNumber::InvalidCall);
    if (static_cast<std::uint64_t>(length) > m_Left) throw Error(ErrorNumber::EndOfFile);
    Text bytes(static_cast<size_t>(length), '\0');
    ReadBytes(bytes.data(), bytes.size());
    return bytes;
}

void SnapshotReader::ReadBytes(char* target, size_t count) {
    if (count > m_Left) throw Error(ErrorNumber::EndOfFile);
    m_Left -= count;
    while (count > 0) {
        if (m_Position == m_Filled) {
            m_Position = 0;
            m_Filled = m_File.Read(m_Buffer.data(), m_Buffer.size());
            if (m_Filled == 0) throw Error(ErrorNumber::EndOfFile);
        }
        const size_t run = std::min(count, m_Filled - m_Position);
        std::memcpy(target, m_Buffer.data() + m_Position, run);
        m_Position += run;
        target += run;
        count -= run;
    }
}

void SnapshotWriter::WriteHeader(const SnapshotHeader& header) {
    AppendNumber(header.Version, 2);
    AppendCounted(ScrambleByLength(header.Stamp));
    AppendNumber(header.Fingerprint, 4);
    AppendNumber(header.EntryCount, 4);
}

void SnapshotWriter::WriteEntry(TextView scrambled) {
    AppendCounted(scrambled);
    if (m_Buffer.size() >= BufferSize) Flush();
}

void SnapshotWriter::Flush() {
    m_File.Write(m_Buffer);
    m_Buffer.clear();
}

void SnapshotWriter::AppendNumber(std::int32_t value, size_t bytes) {
    const auto bits = static_cast<std::uint32_t>(value);
    for (size_t index = 0; index < bytes; ++index) m_Buffer += static_cast<char>(bits >> (8 * index) & 0xFFU);
}

void SnapshotWriter::AppendCounted(TextView bytes) {
    AppendNumber(NarrowToInt32(static_cast<std::int64_t>(bytes.size())), 4);
    m_Buffer += bytes;
}

}  // namespace tb
