#include <gtest/gtest.h>

#include "platform/signatures_contract.h"
#include "refdata/UpdateRig.h"
#include "service/signing/OpenSslSignatures.h"
#include "service/signing/SigningKey.h"

namespace tb {
namespace {

TEST(OpenSslSignatures, KeepTheContract) {
    OpenSslSignatures signatures;
    CheckSignatures(signatures);
}

Text SignedChild(const Text& name, const Text& content, const Text& version = "2.0.0") {
    return Child(name, std::to_string(content.size()), version,
                 "DOWNLOAD='Y' SHA256='" + FileHash(Sha256Of(content)) + "'");
}
const Text SignedFiles = SignedChild("tbXML.dll", "new") + SignedChild("tbUpdater.exe", "updater");

struct SignedRig : UpdateRig {
    explicit SignedRig(const Text& key) : UpdateRig(key, &OpenSsl) {
        // What was staged before.
        System.Files.Folders.insert(Staging);
        Place(Staging / "updates.xml", Manifest("", "3"));
    }
    void Sign(const Text& manifest, const SigningKey& key) {
        Document document;
        document.LoadXML(manifest);
        Net.Answers["POST http://u/updates.xml.sig"] = {200, P256Text(key.Sign(SignedText(*document.Root())))};
    }

    OpenSslSignatures OpenSsl;
};

TEST(CUpdate, TakesOnlyWhatTheDeploymentsKeyHasSigned) {
    const Text good = Manifest(SignedFiles);
    // The key of this deployment, and somebody else's.
    const SigningKey own = SigningKey::Generate(), other = SigningKey::Generate();
    const Text key = P256Text(own.PublicKey());
    const auto sign = [&](const Text& manifest) {
        return [&own, manifest](SignedRig& rig) { rig.Sign(manifest, own); };
    };
    const auto answer = [&](const Text& page, const Text& body) {
        return [&, page, body](SignedRig& rig) {
            rig.Sign(good, own);
            rig.Net.Answers[page] = {200, body};
        };
    };
    const Text taken = "Downloaded 1 Trawlbeam update file: tbXML.dll, tbUpdater.exe";
    const Text notByKey = "its signature is not by the key of this program";
    const Text signature = "POST http://u/updates.xml.sig";
    // With the reason of a refusal or the last line, and the requests: manifest, signature, files.
    const std::tuple<Text, std::function<void(SignedRig&)>, Text, size_t> cases[] = {
        {good, sign(good), taken, 4},
        // What is not signed does not matter: a version that somebody has lowered keeps no file away.
        {Manifest(SignedChild("tbXML.dll", "new", "0.9") + SignedChild("tbUpdater.exe", "updater", "") +
                  Child("x", "1", "", "DOWNLOAD='N'")),
         sign(good), taken, 4},
        {good, [](SignedRig&) {}, "it is not signed (u: refused)", 2},
        {good, answer(signature, ""), "it is not signed (an empty answer)", 2},
        {good, answer(signature, "<html>sorry</html>"), notByKey, 2},
        {good, [&](SignedRig& rig) { rig.Sign(good, other); }, notByKey, 2},
        {good, sign(Manifest(SignedFiles, "4")), notByKey, 2},
        {Manifest(SignedFiles + SignedChild("new.dll", "more")), sign(good), notByKey, 2},
        {Manifest(SignedChild("tbUpdater.exe", "updater") + SignedChild("tbXML.dll", "new")), sign(good), notByKey, 2},
        {Manifest(SignedFiles + Child("new.dll", "4")), sign(good), "it is not signed (a file has no SHA256)", 1},
        {Manifest(SignedFiles, "2"), sign(Manifest(SignedFiles, "2")), "number 2 is older than 3", 1},
        {good, answer("GET http://g/5/tbXML.dll", "bad"), "tbXML.dll is not the file that was signed", 3},
        {good, answer("GET http://g/5/tbUpdater.exe", "attacks"), "tbUpdater.exe is not the file that was signed", 4},
    };
    for (const auto& [manifest, arrange, line, requests] : cases) {
        SignedRig rig(key);
        rig.Set("LastUpdateVersion", "3");
        arrange(rig);
        const bool isTaken = line == taken;
        EXPECT_EQ(rig.Check(manifest), isTaken ? 1 : -1) << line;
        const Lines log = rig.Log.Take();
        EXPECT_EQ(std::count(log.begin(), log.end(), "0 " + (isTaken ? line : "Update refused: " + line)), 1) << line;
        EXPECT_EQ(rig.StagedNames(), isTaken ? "tbXML.dll updates.xml " : "") << line;
        EXPECT_EQ(rig.ContentOf("/app/tbUpdater.exe"), isTaken ? "updater" : "old tbUpdater.exe") << line;
        EXPECT_EQ(rig.Net.Requests.size(), requests) << line;
        EXPECT_EQ(rig.Get("LastUpdateVersion"), isTaken ? "5" : "3") << line;
    }
    // What is installed is not fetched, however new it is called. What is longer than signed does not reach the disk.
    SignedRig same(key);
    same.Place("/app/tbXML.dll", "new");
    const Text three = Manifest(SignedFiles + SignedChild("new.dll", "more"));
    same.Sign(three, own);
    same.Offer("5/new.dll", "more and more");
    EXPECT_EQ(same.Check(three), -1);
    EXPECT_EQ(same.Log.Take().back(), "0    Download file new.dll failure: g: too long");
    same.Offer("5/new.dll", "more");
    EXPECT_EQ(same.Check(three), 1);
    EXPECT_EQ(same.StagedNames(), "new.dll updates.xml ");
}

}  // namespace
}  // namespace tb
