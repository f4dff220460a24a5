// The program as the data files see it: settings, files in memory, a web of pages, and the tables that they fill.
#pragma once

#include <fstream>
#include <iterator>

#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/RecordedLog.h"
#include "refdata/DailyFiles.h"
#include "refdata/Defaults.h"
#include "refdata/Reference.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

using Lines = std::vector<Text>;
using World = std::map<std::filesystem::path, Text>;

inline const std::filesystem::path DefaultsPath = "/app/Data/defaults.bin";
inline const std::filesystem::path ReferencePath = "/app/Data/reference.bin";

// Before any date that a server sends here, and a date that one sends.
inline const Date EarlyDate(CivilDate{1994, 11, 6, 8, 49, 36});
constexpr const char* LaterHead = "HTTP/1.1 200 OK\r\nLast-Modified: Sun, 06 Nov 1994 08:49:37 GMT\r\n\r\n";

// The frame of a document that the pages of docs/formats show.
inline Text Golden(const Text& name) {
    std::ifstream file(TRAWLBEAM_SOURCE "/fuzz/corpus/reference/" + name, std::ios::binary);
    return EncryptStringChk(Text(std::istreambuf_iterator<char>(file), {}));
}

struct RefDataRig {
    explicit RefDataRig(Deployment deployment = TestDeployment()) : Program(System, std::move(deployment)) {
        Program.Settings =
            std::make_shared<xmlINI>(xmlINI::Surroundings{System.Files, System.Clock, System.Dialogs, {}, "Trawlbeam"});
    }
    // Puts a global with the service's server into the settings, as the defaults data do.
    void AddService(const Text& name) {
        const auto servers = std::make_shared<Element>("SERVERS");
        const auto service = std::make_shared<Element>("ELEMENT");
        service->AddAttribute({"NAME", name});
        servers->AddElement(service);
        Program.Settings->ReplaceGlobals("SERVERS", servers);
    }
    void Offer(const Text& file, const Text& reply) {
        Web.Heads[file] = LaterHead;
        Web.Replies[file] = reply;
    }
    void Place(const std::filesystem::path& path, const Text& content) {
        System.Files.Contents[path] = content;
        System.Files.Dates[path] = {EarlyDate, EarlyDate, EarlyDate};
    }
    Text ContentOf(const std::filesystem::path& path) const {
        const auto found = System.Files.Contents.find(path);
        return found == System.Files.Contents.end() ? "none" : found->second;
    }
    // Of the table that a global holds, 0 without it.
    std::int32_t CountOf(const Text& global) const {
        const ElementPtr section = Program.Settings->TryGlobalsSection(global);
        return section ? section->Count() : 0;
    }
    Text StringOf(const Text& global) const {
        return Program.Settings->HasGlobals(global) ? Program.Settings->GlobalsFindString(global) : "none";
    }
    // What was asked of the web, "POST page" each.
    Lines Asked() const {
        Lines asked;
        for (const FakeWeb::Request& request : Web.Requests) asked.push_back(request.Operation + " " + request.Page);
        return asked;
    }
    // The daily look for a data file; what it asked of the web.
    Lines Look(const Text& file) {
        Web.Requests.clear();
        DailyFiles(Access).GetDailyFiles("referencesvr", file, file);
        return Asked();
    }

    struct NoGeoIPHost : GeoIPHost {
        Text EvilWords() override { return "x"; }
        Text HomeCountry() override { return {}; }
    };

    FakeSystem System;
    App Program;
    RecordedLog Log;
    FakeWeb Web;
    ServiceAccess Access{Program, Log, Web.Factory()};
    NoGeoIPHost Host;
    GeoIP Countries{Host};
    std::unique_ptr<WhiteListDB> WhiteList;
    Defaults DefaultsData{Access};
    Reference ReferenceData{Access, {Countries, WhiteList}};
};

}  // namespace tb
