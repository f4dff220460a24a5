// Documents of data files, past their frame: whatever stands in one, loading ends, a load that says True has brought
// what must be there, and what it filled can be used without an end or a crash.
#include <cstdlib>

#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/RecordedLog.h"
#include "refdata/Defaults.h"
#include "refdata/Reference.h"
#include "refdata/ServerLists.h"
#include "shell/helpers/SettingValues.h"
#include "sitedb/codec/Encryption.h"

namespace {

class Host : public tb::GeoIPHost {
public:
    explicit Host(const tb::App& app) : m_App(app) {}
    tb::Text EvilWords() override { return m_App.Settings->GlobalsFindString("EVILWORDS"); }
    tb::Text HomeCountry() override { return {}; }

private:
    const tb::App& m_App;
};

struct Rig {
    explicit Rig(const tb::Text& document) {
        Program.Settings = std::make_unique<tb::xmlINI>(
            tb::xmlINI::Surroundings{System.Files, System.Clock, System.Dialogs, {}, "Trawlbeam"});
        const tb::Text frame = tb::EncryptStringChk(document);
        for (const char* name : {"defaults.bin", "reference.bin"}) System.Files.Contents[Access.DataFile(name)] = frame;
    }

    tb::FakeSystem System;
    tb::App Program{System, tb::TestDeployment()};
    tb::RecordedLog Log;
    tb::FakeWeb Web;
    tb::ServiceAccess Access{Program, Log, Web.Factory()};
    Host Words{Program};
    tb::GeoIP Countries{Words};
    std::unique_ptr<tb::WhiteListDB> WhiteList;
};

void Require(bool condition) {
    if (!condition) std::abort();
}

void LoadReference(const tb::Text& document) {
    Rig rig(document);
    const bool loaded = tb::Reference(rig.Access, {rig.Countries, rig.WhiteList}).LoadReference("");
    Require(loaded == rig.Log.Lines.empty());
    for (const char* table : {"CATEGORIES", "SUBMISSIONS", "DISPOSITIONS"}) {
        Require(!loaded || rig.Program.Settings->TryGlobalsSection(table) != nullptr);
    }
    if (rig.WhiteList) rig.WhiteList->isWhiteList("www.good.example");
    tb::Trap(
        [&] {
            double score = 0;
            tb::Text country;
            rig.Countries.ScoreURL("http://user@pay-pal.example:8080/%41", "0.0.0.0 1.2.3.4 200.0.0.1 255.255.255.255",
                                   score, country);
        },
        [](const tb::RuntimeError& error) { Require(error.Number != 51); });
}

void LoadDefaults(const tb::Text& document) {
    Rig rig(document);
    Require(tb::Defaults(rig.Access).LoadDefaults("") == rig.Log.Lines.empty());
    tb::GetTimerInterval(rig.Program, "EVILDB_INTERVAL", 60);
    std::vector<tb::Text> servers;
    tb::ServerLists(rig.Access).MakeServersArray("SERVERS", "EVILDBSVR", "", servers);
    Require(!servers.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const tb::Text document(reinterpret_cast<const char*>(data), size);
    LoadReference(document);
    LoadDefaults(document);
    return 0;
}
