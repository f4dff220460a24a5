// Replies of the update service: whatever comes, nothing is written but snapshots named by twelve digits, and what was
// saved loads again as the list that it was saved from. The bytes are tried as they come and as the text of a good
// frame, so that the search gets past the checksum.
#include <cstdlib>

#include "sitedb/BuiltInCategories.h"
#include "sitedb/EvilDB.h"
#include "sitedb/codec/Encryption.h"
#include "tests/fakes/FakeFiles.h"
#include "tests/fakes/FakeSender.h"

namespace {

using tb::Text;

class Host : public tb::EvilDBHost {
public:
    Text CategoryName(const Text& id) override { return tb::BuiltInCategoryName(id); }
    bool IsDebugMode() override { return true; }
    tb::ElementPtr UpdateServers() override { return std::make_shared<tb::Element>("Service"); }
    std::unique_ptr<tb::Sender> MakeUpdateSender() override { return Web.Factory()(); }

    tb::FakeWeb Web;
};

void Require(bool holds) {
    if (!holds) std::abort();
}

void Update(const Text& reply) {
    tb::FakeFiles files;
    files.Folders = {"", "Data"};
    Host host;
    host.Web.Replies["MalDB.aspx"] = reply;
    tb::EvilDB list(files, host, "Data");
    list.AddToDB("http://evil.example/first", "2", "11/01/2026");
    bool taken = false;
    list.EvilAdded.Connect([&](std::int32_t, std::int32_t) { taken = true; });
    list.Update("key");
    Text category;
    Text validated;
    list.IsEvil("http://www.evil.example/first/path", category, validated);

    Require(files.Contents.size() <= (taken ? 1U : 0U));
    for (const auto& [path, content] : files.Contents) {
        const Text name = path.filename().string();
        Require(path.parent_path() == "Data" && name.size() == 20 && name.substr(0, 4) == "TBDB" &&
                name.find_first_not_of("0123456789", 4) == 16 && name.substr(16) == ".BIN");
        tb::EvilDB again(files, host, "Data");
        bool corrupt = true;
        Require(again.RestoreDB(corrupt) && !corrupt && again.LastTimestamp() == list.LastTimestamp());
        Require(again.LiveCount() == list.LiveCount() && again.Fingerprint() == list.Fingerprint());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Text input(reinterpret_cast<const char*>(data), size);
    Update(input);
    if (!input.empty()) Update(tb::EncryptStringChk(input));
    return 0;
}
