// A program with three components, and the servers that have its update.
#pragma once

#include "components/tbSender/tbSender.h"
#include "components/tbXML/Document.h"
#include "fakes/FakeHttp.h"
#include "refdata/Components.h"
#include "refdata/RefDataRig.h"
#include "refdata/cUpdate.h"

namespace tb {

inline const std::filesystem::path Staging = "/app/Updates";
inline const Text Today = "11/21/2026 08:09:10";
inline const Text Checking = "0 Checking for updates. Last checked on: ";

inline Text Child(const Text& name, const Text& size, const Text& version = "2.0.0",
                  const Text& more = "DOWNLOAD='y'") {
    return "<F FILE='" + name + "' SIZE='" + size + "' VERSION='" + version + "' ModifiedDate='11/20/2026 07:08:09' " +
           more + "/>";
}
inline Text Manifest(const Text& children, const Text& version = "5") {
    return "<UPDATES VERSION='" + version + "'>" + children + "</UPDATES>";
}
inline const Text TwoFiles = Child("tbXML.dll", "3") + Child("new.dll", "4", "");

struct UpdateRig : RefDataRig {
    // A deployment with that key, and the checks of signatures that it needs.
    explicit UpdateRig(const Text& key = {}, Signatures* checks = nullptr)
        : RefDataRig(DeploymentWith(key)), Checks(checks) {
        Document servers;
        servers.LoadXML(
            "<SERVERS><E NAME='UpdatesSVR'><Server WEIGHT='1' ACTIVE='Y'>http://u</Server></E>"
            "<E NAME='GetUpdatesSVR'><Server WEIGHT='1' ACTIVE='Y'>http://g</Server></E>"
            "<E NAME='ReferenceSVR'><Server WEIGHT='1' ACTIVE='Y'>http://r</Server></E></SERVERS>");
        Program.Settings->ReplaceGlobals("SERVERS", servers.Root());
        Program.Settings->LoadINI("/app/Trawlbeam.ini");
        Program.Components = std::make_shared<ComponentList>();
        for (const Text name : {"tbXML.dll", "tbUpdater.exe"}) {
            Place("/app/" + name, "old " + name);
            System.Versions.Versions["/app/" + name]["FileVersion"] = "1.0.0";
        }
        Place("/app/Trawlbeam.chm", "old help");
        for (const Text name : {"tbXML.dll", "tbUpdater.exe", "Trawlbeam.chm", "gone.dll"}) {
            AddComponent(Program, {}, name, true);
        }
        Set("LastUpdateDate", "11/20/2026 01:02:03");
        Updater.LogMessage.Connect([this](const Text& line, LogLevel level) { Log.WriteLog(line, level); });
        Updater.StatusPercent.Connect([this](std::int16_t percent) { Percents += std::to_string(percent) + " "; });
        Offer("5/tbXML.dll", "new");
        Offer("5/new.dll", "more");
        Offer("5/tbUpdater.exe", "updater");
        Offer("5/Trawlbeam.chm", "help");
    }
    static Deployment DeploymentWith(const Text& key) {
        Deployment deployment = TestDeployment();
        deployment.UpdateKey = key;
        return deployment;
    }
    void Set(const char* key, const Text& value) { Program.Settings->WriteXMLString("Main", key, value); }
    Text Get(const char* key) const { return Program.Settings->GetXMLString("Main", key, ""); }
    void Offer(const Text& page, const Text& body) { Net.Answers["GET http://g/" + page] = {200, body}; }
    std::int16_t Check(const Text& manifest, bool manual = false) {
        Net.Answers["POST http://u/updates.xml"] = {200, manifest};
        return Updater.DoCheckForUpdates(manual);
    }
    // What lies in the folder of staged files.
    Text StagedNames() {
        Text names;
        for (const std::filesystem::path& name : System.Files.List(Staging)) names += name.string() + " ";
        return names;
    }

    Signatures* const Checks;
    FakeHttp Net;
    bool Exit = false;
    ServiceAccess Real{Program, Log,
                       [this] {
                           return std::make_unique<tbSender>(
                               tbSender::Parts{Net, System.Random, System.Files, [this] { return Exit; }});
                       },
                       Checks};
    cUpdate Updater{Real, [this] { return Exit; }};
    Text Percents;
};

}  // namespace tb
