// The guard of a list: whatever an update says, half of the list stays and no stamp is far ahead; whatever lies in the
// record of the guard, the list is loaded and asks on.
#include <cstdlib>

#include "sitedb/BuiltInCategories.h"
#include "sitedb/EvilDB.h"
#include "sitedb/codec/Encryption.h"
#include "tests/fakes/FakeFiles.h"
#include "tests/fakes/FakeSender.h"

namespace {

using tb::Text;

class Noon : public tb::Clock {
public:
    tb::Date Now() override { return tb::Date(tb::CivilDate{2026, 11, 21, 12, 0, 0}); }
};

class Host : public tb::EvilDBHost {
public:
    Text CategoryName(const Text& id) override { return tb::BuiltInCategoryName(id); }
    bool IsDebugMode() override { return false; }
    tb::ElementPtr UpdateServers() override { return std::make_shared<tb::Element>("Service"); }
    std::unique_ptr<tb::Sender> MakeUpdateSender() override { return Web.Factory()(); }

    tb::FakeWeb Web;
};

void Require(bool holds) {
    if (!holds) std::abort();
}

constexpr const char* Stamp = "202611210900";
constexpr std::int32_t Count = 1000;

// A folder with a list that is large enough to be guarded.
tb::FakeFiles Folder() {
    tb::FakeFiles files;
    files.Folders = {"", "Data"};
    Host host;
    tb::EvilDB list(files, host, "Data");
    list.AddToDB("http://evil.example/first", "2", "11/01/2026");
    for (int number = 1; number < Count; ++number) list.AddToDB("http://h" + std::to_string(number), "2", "v");
    Require(list.SaveDB(Stamp, list.Fingerprint()));
    return files;
}

// `input` as what the service says, or as what the guard remembers.
void Update(const Text& input, bool isRecord) {
    static const tb::FakeFiles folder = Folder();
    tb::FakeFiles files = folder;
    Noon clock;
    Host host;
    const Text framed = tb::EncryptStringChk(input);
    if (isRecord) files.Contents["Data/ListGuard.bin"] = framed;
    host.Web.Replies["MalDB.aspx"] = isRecord ? tb::EncryptStringChk("202611210901\n1\n") : framed;
    tb::EvilDB list(files, host, "Data", std::make_unique<tb::UpdateGuard>(files, clock, "Data", "202611010000"));
    bool taken = false;
    list.EvilAdded.Connect([&](std::int32_t, std::int32_t) { taken = true; });
    list.Load("key");
    Require(list.LastTimestamp() == Stamp);
    list.Update("key");
    Require(taken ? isRecord || list.LiveCount() >= Count / 2 : list.LiveCount() == Count);
    // Noon may be midnight in Greenwich, and the stamp a day ahead of that.
    Require(taken ? list.LastTimestamp() <= "202611230000" : list.LastTimestamp() <= Stamp);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Text input(reinterpret_cast<const char*>(data), size);
    if (input.empty()) return 0;
    Update(input, input.compare(0, 10, "list guard") == 0);
    return 0;
}
