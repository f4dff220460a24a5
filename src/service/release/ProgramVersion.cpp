#include "service/release/ProgramVersion.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

#include "base/bytes.h"
#include "base/codepage.h"
#include "base/errors.h"

namespace tb {

namespace {

// Offsets and sizes in the file's headers, as the format fixes them.
constexpr size_t OffsetOfHeader = 0x3C;
constexpr size_t SizeOfFileHeader = 24;
constexpr size_t SizeOfSection = 40;
constexpr size_t SizeOfDirectoryEntry = 8;
constexpr size_t ResourceDirectory = 2;
constexpr std::uint32_t VersionType = 16;
constexpr std::uint32_t IsSubdirectory = 0x80000000;

[[noreturn]] void FailVersion() { throw InputError("its version resource is damaged"); }

// Bytes that are read at offsets which the file itself tells.
class Image {
public:
    explicit Image(TextView bytes) : m_Bytes(bytes) {}

    size_t Size() const { return m_Bytes.size(); }
    std::uint32_t Word(size_t offset) const { return static_cast<std::uint32_t>(LittleEndian(Part(offset, 2))); }
    std::uint32_t Long(size_t offset) const { return static_cast<std::uint32_t>(LittleEndian(Part(offset, 4))); }
    TextView Part(size_t offset, size_t size) const {
        if (offset > m_Bytes.size() || size > m_Bytes.size() - offset) throw InputError("it ends too early");
        return m_Bytes.substr(offset, size);
    }

private:
    TextView m_Bytes;
};

// A program file: its sections and where its resources are.
class Program {
public:
    explicit Program(TextView file) : m_File(file) {
        if (!file.starts_with("MZ")) throw InputError("it is no program file");
        const size_t header = m_File.Long(OffsetOfHeader);
        if (m_File.Part(header, 4) != TextView("PE\0\0", 4)) throw InputError("it is no program file for Windows");
        m_SectionCount = m_File.Word(header + 6);
        const size_t optional = header + SizeOfFileHeader;
        m_Sections = optional + m_File.Word(header + 20);
        // The two forms differ in the width of addresses.
        const bool wide = m_File.Word(optional) == 0x20B;
        const size_t directories = optional + (wide ? 112 : 96);
        if (m_File.Long(directories - 4) > ResourceDirectory)
            m_Resources = m_File.Long(directories + 8 * ResourceDirectory);
    }

    // Address of the resources in memory, 0 without any.
    std::uint32_t Resources() const { return m_Resources; }
    // What the file holds from an address on, to the end of the section.
    TextView FromAddress(std::uint32_t address) const {
        for (size_t index = 0; index < m_SectionCount; ++index) {
            const size_t section = m_Sections + index * SizeOfSection;
            const std::uint32_t begin = m_File.Long(section + 12);
            const std::uint32_t size = m_File.Long(section + 16);
            if (address < begin || address - begin >= size) continue;
            return m_File.Part(m_File.Long(section + 20), size).substr(address - begin);
        }
        throw InputError("its resources lie outside of its sections");
    }

private:
    Image m_File;
    size_t m_SectionCount = 0;
    size_t m_Sections = 0;
    std::uint32_t m_Resources = 0;
};

// Where an entry of a directory of resources leads: the one of a type, or the first; 0 without it.
std::uint32_t EntryOf(const Image& resources, size_t directory, std::uint32_t type) {
    const size_t named = resources.Word(directory + 12);
    const size_t count = named + resources.Word(directory + 14);
    for (size_t index = type == 0 ? 0 : named; index < count; ++index) {
        const size_t entry = directory + 16 + index * SizeOfDirectoryEntry;
        if (type == 0 || resources.Long(entry) == type) return resources.Long(entry + 4);
    }
    return 0;
}

// The bytes of the first version resource: by type, name and language.
std::optional<TextView> VersionResource(const Program& program) {
    if (program.Resources() == 0) return std::nullopt;
    const Image resources(program.FromAddress(program.Resources()));
    std::uint32_t offset = EntryOf(resources, 0, VersionType);
    if (offset == 0) return std::nullopt;
    for (int level = 0; level < 2; ++level) {
        if ((offset & IsSubdirectory) == 0) FailVersion();
        offset = EntryOf(resources, offset & ~IsSubdirectory, 0);
    }
    if (offset == 0 || (offset & IsSubdirectory) != 0) FailVersion();
    const TextView content = program.FromAddress(resources.Long(offset));
    return Image(content).Part(0, resources.Long(offset + 4));
}

size_t Aligned(size_t offset) { return (offset + 3) & ~size_t{3}; }

// A node of the tree in a version resource: a key, a value, children. All offsets count from the beginning of the
// resource.
class Node {
public:
    // It ends with its parent at the latest, whatever it says.
    Node(const Image& resource, size_t offset, size_t parentEnd)
        : m_Resource(resource), m_Offset(offset), m_End(std::min(offset + resource.Word(offset), parentEnd)) {
        if (m_End < offset + 6) FailVersion();
        const size_t key = offset + 6;
        m_Value = Aligned(key + 2 * (Characters(key).size() + 1));
    }

    size_t End() const { return m_End; }
    Text Key() const { return FromWide(Characters(m_Offset + 6)); }
    // A value that is a text.
    Text TextValue() const { return m_Value < m_End ? FromWide(Characters(m_Value)) : Text(); }
    // A value that is two words, both 0 when they are not there.
    std::pair<std::uint32_t, std::uint32_t> PairValue() const {
        if (m_Value + 4 > m_End) return {};
        return {m_Resource.Word(m_Value), m_Resource.Word(m_Value + 2)};
    }
    std::optional<Node> Child(const Text& key) const {
        // The length counts characters of a text, else bytes.
        const bool isText = m_Resource.Word(m_Offset + 4) == 1;
        const size_t size = m_Resource.Word(m_Offset + 2) * size_t{isText ? 2U : 1U};
        for (size_t offset = Aligned(m_Value + size); offset + 6 <= m_End;) {
            const Node child(m_Resource, offset, m_End);
            if (LowerCase(child.Key()) == LowerCase(key)) return child;
            offset = Aligned(child.End());
        }
        return std::nullopt;
    }

private:
    // Up to a zero or the end of the node.
    std::u16string Characters(size_t offset) const {
        std::u16string characters;
        for (; offset + 2 <= m_End; offset += 2) {
            const std::uint32_t character = m_Resource.Word(offset);
            if (character == 0) break;
            characters += static_cast<char16_t>(character);
        }
        return characters;
    }

    Image m_Resource;
    size_t m_Offset;
    size_t m_End;
    size_t m_Value = 0;
};

}  // namespace

std::optional<Text> FileVersionOf(TextView file) {
    const std::optional<TextView> bytes = VersionResource(Program(file));
    if (!bytes) return std::nullopt;
    const Image resource(*bytes);
    const Node root(resource, 0, resource.Size());
    const auto below = [](const std::optional<Node>& node, const Text& key) {
        return node ? node->Child(key) : std::nullopt;
    };
    const auto list = below(root.Child("VarFileInfo"), "Translation");
    const auto [language, codePage] = list ? list->PairValue() : std::pair<std::uint32_t, std::uint32_t>();
    char table[32];
    std::snprintf(table, sizeof table, "%04x%04x", language, codePage);
    const auto version = below(below(root.Child("StringFileInfo"), table), "FileVersion");
    return version ? version->TextValue() : Text();
}

}  // namespace tb
