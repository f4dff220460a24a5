// The browser helper's configuration file: whatever lies in it is loaded whole or refused with the one error, and what
// was loaded is the same after it was saved and loaded again. The body is also tried under a header made to fit.
#include <cstdlib>

#include "base/bytes.h"
#include "components/tbBHOCfg/BHOSettings.h"
#include "fakes/FakeFiles.h"
#include "sitedb/codec/cCRC32.h"

namespace {

constexpr std::int32_t Damaged = 321;
constexpr std::size_t HeaderSize = 14;

tb::Text Number(std::uint64_t value) {
    tb::Text bytes(4, '\0');
    tb::PutLittleEndian(value, bytes.data(), bytes.size());
    return bytes;
}

void Load(const tb::Text& content) {
    tb::FakeFiles files;
    files.Folders.insert("/p");
    files.Contents["/p/TB.BIN"] = content;
    tb::BHOSettings settings;
    const tb::BHOSettings untouched;
    try {
        settings.Load(files, "/p/TB.BIN");
    } catch (const tb::RuntimeError& error) {
        if (error.Number != Damaged || settings != untouched) std::abort();
        return;
    }
    settings.Save(files, "/p/TB.BIN");
    tb::BHOSettings again;
    again.Load(files, "/p/TB.BIN");
    if (again != settings) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tb::Text content(reinterpret_cast<const char*>(data), size);
    Load(content);
    if (size < HeaderSize) return 0;
    const tb::Text body = content.substr(HeaderSize);
    const auto checksum = static_cast<std::uint32_t>(tb::cCRC32().GetStringCrc32(body, 0));
    Load(content.substr(0, 6) + Number(body.size()) + Number(checksum) + body);
    return 0;
}
