// A program file that an operator publishes: whatever it holds, its version is read or refused, within its bytes.
#include "base/errors.h"
#include "service/release/ProgramVersion.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        static_cast<void>(tb::FileVersionOf({reinterpret_cast<const char*>(data), size}));
    } catch (const tb::RuntimeError&) {
        // Damaged.
    }
    return 0;
}
