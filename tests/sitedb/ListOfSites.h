// A site list over files in memory, its log recorded, and a service that answers from a table.
#pragma once

#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/RecordedLog.h"
#include "sitedb/BuiltInCategories.h"
#include "sitedb/EvilDB.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

using Lines = std::vector<Text>;

class ListOfSites : public EvilDBHost {
public:
    ListOfSites() {
        Storage.Folders = {"", "Data"};
        Servers->SetAttributeValue("NAME", "EVILDBSVR");
        Renew();
    }
    // The list of a program that starts anew over the same files.
    void Renew() {
        DB = std::make_unique<EvilDB>(
            Storage, *this, "Data",
            Guarded ? std::make_unique<UpdateGuard>(Storage, Time, "Data", "202611010000") : nullptr);
        DB->LogMessage.Connect([this](const Text& line, LogLevel level) { Log.WriteLog(line, level); });
        DB->EvilLoadPercent.Connect([this](std::int16_t percent) { Percents += std::to_string(percent) + " "; });
        DB->EvilAdded.Connect([this](std::int32_t added, std::int32_t deleted) {
            Log.Lines.push_back("EvilAdded " + std::to_string(added) + " " + std::to_string(deleted));
        });
    }

    Text CategoryName(const Text& id) override { return BuiltInCategoryName(id); }
    bool IsDebugMode() override { return false; }
    ElementPtr UpdateServers() override {
        if (NoServerList) throw Error(ErrorNumber::InvalidCall);
        return Servers;
    }
    std::unique_ptr<Sender> MakeUpdateSender() override { return NoSender ? nullptr : Web.Factory()(); }

    // The service's next replies: as they are, or a text in its frame.
    Text& Reply() { return Web.Replies["MalDB.aspx"]; }
    void Frame(const Text& plain) { Reply() = EncryptStringChk(plain); }
    // An update with that text; the lines it gave.
    Lines Update(const Text& plain) {
        Frame(plain);
        return UpdateAsItIs();
    }
    Lines UpdateAsItIs() {
        EXPECT_EQ(DB->Update("A-1"), "");
        return Log.Take();
    }

    void Add(const Text& url, const Text& category = "2", const Text& validated = "date") {
        DB->AddToDB(url, category, validated);
    }
    // The validated text of the entry that hits, or "-".
    Text Hit(const Text& url) {
        Text category = "untouched";
        Text validated = "-";
        const bool evil = DB->IsEvil(url, category, validated);
        return evil == (category != "untouched") ? validated : "out-values without a hit";
    }
    bool Hits(const Text& url) { return Hit(url) != "-"; }
    // Stamps of the snapshots, joined by blanks; other files by their whole names.
    Text Snapshots() const {
        Text all;
        for (const auto& [path, content] : Storage.Contents) {
            const Text name = path.filename().string();
            const bool plain = name.size() == 20 && name.compare(0, 4, "TBDB") == 0;
            all += (all.empty() ? "" : " ") + (plain ? name.substr(4, 12) : name);
        }
        return all;
    }
    static FakeFiles::Path File(const Text& stamp) { return FakeFiles::Path("Data") / ("TBDB" + stamp + ".BIN"); }

    FakeFiles Storage;
    FakeWeb Web;
    RecordedLog Log;
    Text Percents;
    ElementPtr Servers = std::make_shared<Element>("Service");
    // Of the guard, if there is one from the next Renew on.
    bool Guarded = false;
    FakeClock Time;
    bool NoServerList = false;
    bool NoSender = false;
    std::unique_ptr<EvilDB> DB;
};

}  // namespace tb
