#include "urlcheck/sounds/WaveFile.h"

#include "base/bytes.h"

namespace tb {

namespace {

constexpr size_t ChunkHeader = 8;
constexpr size_t SmallestFormat = 16;

}  // namespace

bool IsWaveFile(TextView bytes) {
    if (bytes.size() < ChunkHeader + 4 || bytes.substr(0, 4) != "RIFF" || bytes.substr(8, 4) != "WAVE") return false;
    const size_t length = LittleEndian(bytes.substr(4, 4));
    if (length > bytes.size() - ChunkHeader) return false;
    TextView rest = bytes.substr(0, ChunkHeader + length);
    if (rest.size() < ChunkHeader + 4) return false;
    rest.remove_prefix(ChunkHeader + 4);
    bool hasFormat = false;
    while (rest.size() >= ChunkHeader) {
        const TextView name = rest.substr(0, 4);
        const size_t size = LittleEndian(rest.substr(4, 4));
        rest.remove_prefix(ChunkHeader);
        if (size > rest.size()) return false;
        if (name == "data") return hasFormat;
        if (name == "fmt ") hasFormat = size >= SmallestFormat;
        // A chunk of odd length is followed by a byte that fills it up.
        rest.remove_prefix(size < rest.size() ? size + size % 2 : size);
    }
    return false;
}

}  // namespace tb
