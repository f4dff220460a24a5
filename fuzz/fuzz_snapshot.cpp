// Snapshot files: whatever lies in one, loading ends, holds no more than the file, and a list that was taken has the
// fingerprint that was checked. The bytes behind the layout's fixed part are also tried under a fingerprint made to
// fit, so that the search gets past the check.
#include <cstdlib>
#include <cstring>

#include "fuzz/MemoryFiles.h"
#include "sitedb/BuiltInCategories.h"
#include "sitedb/EvilDB.h"
#include "sitedb/SnapshotFile.h"
#include "sitedb/codec/cCRC32.h"

namespace {

class Host : public tb::EvilDBHost {
public:
    tb::Text CategoryName(const tb::Text& id) override { return tb::BuiltInCategoryName(id); }
    bool IsDebugMode() override { return true; }
};

void Load(tb::TextView content) {
    tb::MemoryFiles files(content);
    Host host;
    tb::EvilDB evilDB(files, host, "Data");
    const bool loaded = evilDB.LoadDB("any.BIN", 0);
    // Fewer than the file counts when it was made to fit what the rules leave of it.
    if (loaded && evilDB.LiveCount() > evilDB.Count()) std::abort();
    if (evilDB.LiveCount() > static_cast<std::int32_t>(content.size())) std::abort();
    tb::Text category;
    tb::Text validated;
    evilDB.IsEvil("http://www.evil.example/path", category, validated);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tb::Text content(reinterpret_cast<const char*>(data), size);
    Load(content);
    try {
        tb::MemoryReader file(content);
        tb::SnapshotReader reader(file);
        const tb::SnapshotHeader header = reader.ReadHeader();
        std::int32_t fingerprint = 0;
        for (std::int32_t index = 0; index < header.EntryCount; ++index) {
            fingerprint = tb::cCRC32().GetStringCrc32(reader.ReadEntry(), fingerprint);
        }
        std::memcpy(content.data() + 6 + header.Stamp.size(), &fingerprint, sizeof fingerprint);
        Load(content);
    } catch (const tb::RuntimeError&) {
        // Not readable to its end: there is no fingerprint to fit.
    }
    return 0;
}
