// Images of sounds: what counts as a wave file is handed to the system as memory without a length, so it must be one to
// its last byte, by the length that stands in it.
#include <cstdlib>

#include "base/bytes.h"
#include "urlcheck/sounds/WaveFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tb::TextView bytes(reinterpret_cast<const char*>(data), size);
    if (!tb::IsWaveFile(bytes)) return 0;
    const size_t whole = 8 + tb::LittleEndian(bytes.substr(4, 4));
    if (whole > size || !tb::IsWaveFile(bytes.substr(0, whole)) || tb::IsWaveFile(bytes.substr(0, whole - 1))) {
        std::abort();
    }
    return 0;
}
