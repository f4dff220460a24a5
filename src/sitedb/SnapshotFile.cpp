#include "sitedb/SnapshotFile.h"

#include <cstring>

#include "base/bytes.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr size_t ReadSize = 1U << 16;
// More at a time makes writing cheaper.
constexpr size_t WriteSize = 1U << 18;

constexpr TextView FilePrefix = "TBDB";
constexpr TextView FileExtension = ".BIN";

}  // namespace

bool IsStamp(TextView text) {
    return text.size() == StampLength && text.find_first_not_of("0123456789") == TextView::npos;
}

Date StampToDate(TextView stamp) {
    if (!IsStamp(Left(stamp, StampLength))) throw Error(ErrorNumber::TypeMismatch);
    const auto part = [&](long position, long length) {
        return static_cast<int>(ToInt16(Mid(stamp, position, length)));
    };
    return Date(CivilDate{part(1, 4), part(5, 2), part(7, 2), part(9, 2), part(11, 2), 0});
}

Text SnapshotName(const Text& stamp) { return Text(FilePrefix) + stamp + Text(FileExtension); }

bool StampOfName(TextView name, Text& stamp) {
    if (name.size() < FilePrefix.size() + FileExtension.size()) return false;
    const size_t length = name.size() - FilePrefix.size() - FileExtension.size();
    if (UpperCase(Left(name, FilePrefix.size())) != FilePrefix) return false;
    if (UpperCase(name.substr(FilePrefix.size() + length)) != FileExtension) return false;
    stamp = name.substr(FilePrefix.size(), length);
    return true;
}

Text NameText(const std::filesystem::path& path) {
    const std::u8string name = path.filename().u8string();
    return {name.begin(), name.end()};
}

SnapshotReader::SnapshotReader(FileReader& file) : m_File(file), m_Left(file.Size()), m_Buffer(ReadSize) {}

SnapshotHeader SnapshotReader::ReadHeader() {
    SnapshotHeader header;
    header.Version = static_cast<std::int16_t>(ReadNumber(2));
    header.Stamp = UnscrambleByLength(ReadCounted());
    header.Fingerprint = ReadNumber(4);
    header.EntryCount = ReadNumber(4);
    if (header.EntryCount < 0) throw Error(ErrorNumber::InvalidCall);
    return header;
}

std::int32_t SnapshotReader::ReadNumber(size_t bytes) {
    return static_cast<std::int32_t>(LittleEndian({Take(bytes), bytes}));
}

TextView SnapshotReader::ReadCounted() {
    const std::int32_t length = ReadNumber(4);
    if (length < 0) throw Error(ErrorNumber::InvalidCall);
    const auto count = static_cast<size_t>(length);
    return {Take(count), count};
}

const char* SnapshotReader::Take(size_t count) {
    if (count > m_Left) throw Error(ErrorNumber::EndOfFile);
    if (count > m_Filled - m_Position) {
        std::memmove(m_Buffer.data(), m_Buffer.data() + m_Position, m_Filled - m_Position);
        m_Filled -= m_Position;
        m_Position = 0;
        if (count > m_Buffer.size()) m_Buffer.resize(count);
        while (m_Filled < count) {
            const size_t read = m_File.Read(m_Buffer.data() + m_Filled, m_Buffer.size() - m_Filled);
            if (read == 0) throw Error(ErrorNumber::EndOfFile);
            m_Filled += read;
        }
    }
    const char* const taken = m_Buffer.data() + m_Position;
    m_Position += count;
    m_Left -= count;
    return taken;
}

SnapshotWriter::SnapshotWriter(FileWriter& file) : m_File(file), m_Buffer(WriteSize) {}

void SnapshotWriter::WriteHeader(const SnapshotHeader& header) {
    AppendNumber(header.Version, 2);
    AppendCounted(ScrambleByLength(header.Stamp));
    AppendNumber(header.Fingerprint, 4);
    AppendNumber(header.EntryCount, 4);
}

void SnapshotWriter::WriteEntry(TextView scrambled) { AppendCounted(scrambled); }

void SnapshotWriter::Flush() {
    m_File.Write({m_Buffer.data(), m_Filled});
    m_Filled = 0;
}

void SnapshotWriter::AppendNumber(std::int32_t value, size_t bytes) {
    char raw[4];
    PutLittleEndian(static_cast<std::uint32_t>(value), raw, bytes);
    Append({raw, bytes});
}

void SnapshotWriter::AppendCounted(TextView bytes) {
    AppendNumber(NarrowToInt32(static_cast<std::int64_t>(bytes.size())), 4);
    Append(bytes);
}

void SnapshotWriter::Append(TextView bytes) {
    // The longest entry is far smaller than the buffer.
    if (bytes.size() > m_Buffer.size() - m_Filled) Flush();
    std::memcpy(m_Buffer.data() + m_Filled, bytes.data(), bytes.size());
    m_Filled += bytes.size();
}

}  // namespace tb
