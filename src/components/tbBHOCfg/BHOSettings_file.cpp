#include "base/bytes.h"
#include "components/tbBHOCfg/BHOSettings.h"
#include "platform/AtomicWrite.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {

namespace {

constexpr TextView Magic = "TBBH";
constexpr std::uint32_t FormatVersion = 1;
// Magic, version, length of the body, checksum.
constexpr std::size_t HeaderSize = 14;
// More than the program ever writes, and little enough to be read whole.
constexpr std::uint64_t LargestFile = std::uint64_t{64} << 20;

RuntimeError Damaged(TextView what) { return {321, "Invalid file format: " + Text(what), "BHOSettings"}; }

void AppendNumber(Text& bytes, std::size_t value, std::size_t size) {
    bytes.append(size, '\0');
    PutLittleEndian(value, bytes.data() + bytes.size() - size, size);
}

std::uint32_t Checksum(TextView body) { return static_cast<std::uint32_t>(cCRC32().GetStringCrc32(body, 0)); }

// Takes a file apart from its beginning on; whatever is not there raises Damaged.
class Pieces {
public:
    explicit Pieces(TextView bytes) : m_Left(bytes) {}

    TextView Take(std::size_t count) {
        if (count > m_Left.size()) throw Damaged("the file ends too early");
        const TextView taken = m_Left.substr(0, count);
        m_Left.remove_prefix(count);
        return taken;
    }
    std::uint32_t TakeNumber(std::size_t size) { return static_cast<std::uint32_t>(LittleEndian(Take(size))); }
    TextView Rest() const { return m_Left; }

private:
    TextView m_Left;
};

// The body, once it is known to be whole.
TextView CheckedBody(TextView bytes) {
    Pieces header(bytes);
    if (header.Take(Magic.size()) != Magic) throw Damaged("this is no helper configuration");
    if (header.TakeNumber(2) != FormatVersion) throw Damaged("the file is of another version");
    const std::uint32_t length = header.TakeNumber(4);
    const std::uint32_t checksum = header.TakeNumber(4);
    if (header.Rest().size() < length) throw Damaged("the file ends too early");
    if (header.Rest().size() > length) throw Damaged("the file goes on behind its end");
    if (Checksum(header.Rest()) != checksum) throw Damaged("the checksum is wrong");
    return header.Rest();
}

}  // namespace

Text BHOSettings::ToBytes() const {
    Text body;
    for (const std::vector<Element>& elements : m_Sections) {
        AppendNumber(body, elements.size(), 4);
        for (const Element& element : elements) {
            AppendNumber(body, element.size(), 2);
            for (const auto& [name, value] : element) {
                AppendNumber(body, name.size(), 2);
                body += name;
                AppendNumber(body, value.size(), 4);
                body += value;
            }
        }
    }
    if (body.size() > LargestFile - HeaderSize) throw Error(ErrorNumber::Overflow);
    Text bytes(Magic);
    AppendNumber(bytes, FormatVersion, 2);
    AppendNumber(bytes, body.size(), 4);
    AppendNumber(bytes, Checksum(body), 4);
    return bytes + body;
}

BHOSettings BHOSettings::FromBytes(TextView bytes) {
    BHOSettings settings;
    Pieces body(CheckedBody(bytes));
    for (std::size_t index = 0; index < BHOSectionCount; ++index) {
        const auto section = static_cast<BHOSection>(index);
        const std::uint32_t count = body.TakeNumber(4);
        const std::size_t fixed = settings.Count(section);
        if (fixed != 0 && count != fixed) throw Damaged("a section has another number of elements");
        for (std::uint32_t element = 0; element < count; ++element) {
            if (fixed == 0) settings.Add(section);
            settings.Of(section)[element].clear();
            for (std::uint32_t values = body.TakeNumber(2); values > 0; --values) {
                const TextView name = body.Take(body.TakeNumber(2));
                settings.Set(section, element, name, body.Take(body.TakeNumber(4)));
            }
        }
    }
    if (!body.Rest().empty()) throw Damaged("something follows the last section");
    return settings;
}

void BHOSettings::Save(Files& files, const std::filesystem::path& path) const {
    const Text bytes = ToBytes();
    WriteFileAtomically(files, path, [&](FileWriter& writer) { writer.Write(bytes); });
}

void BHOSettings::Load(Files& files, const std::filesystem::path& path) {
    if (files.OpenForReading(path)->Size() > LargestFile) throw Damaged("the file is too large");
    const Text bytes = ReadWholeFile(files, path);
    BHOSettings loaded;
    try {
        loaded = FromBytes(bytes);
    } catch (const RuntimeError& error) {
        // A checksum that fits and a content that no program of ours writes.
        if (error.Source == "BHOSettings" || error.Number == static_cast<std::int32_t>(ErrorNumber::OutOfMemory)) throw;
        throw Damaged("an element is none of its section");
    }
    *this = std::move(loaded);
}

}  // namespace tb
