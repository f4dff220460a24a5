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

// The keys of this deployment and of somebody else.
struct Keys {
    const SigningKey Own = SigningKey::Generate();
    const SigningKey Other = SigningKey::Generate();
};
const Keys& TestKeys() {
    static const Keys keys;
    return keys;
}

Text SignedChild(const Text& name, const Text& content, const Text& hash, const Text& version = "2.0.0") {
    return Child(name, std::to_string(content.size()), version, "DOWNLOAD='Y' SHA256='" + hash + "'");
}
Text SignedChild(const Text& name, const Text& content) {
    return SignedChild(name, content, FileHash(Sha256Of(content)));
}
const Text SignedFiles = SignedChild("tbXML.dll", "new") + SignedChild("tbUpdater.exe", "updater");

struct SignedRig : UpdateRig {
    explicit SignedRig(const Text& key) : UpdateRig(key, &OpenSsl) {
        // What was staged before.
        System.Files.Folders.insert(Staging);
        Place(Staging / "updates.xml", Manifest("", "3"));
    }
    void Sign(const Text& manifest, const SigningKey& key, const Text& folder = {}) {
        Document document;
        document.LoadXML(manifest);
        Net.Answers["POST http://u/" + folder + "updates.xml.sig"] = {200,
                                                                      P256Text(key.Sign(SignedText(*document.Root())))};
    }

    OpenSslSignatures OpenSsl;
};

TEST(CUpdate, TakesOnlyWhatTheDeploymentsKeyHasSigned) {
    const Text good = Manifest(SignedFiles);
    const Text own = P256Text(TestKeys().Own.PublicKey());
    const auto sign = [](const Text& manifest) {
        return [manifest](SignedRig& rig) { rig.Sign(manifest, TestKeys().Own); };
    };
    const auto answer = [](const Text& page, const Text& body) {
        return [page, body, good = Manifest(SignedFiles)](SignedRig& rig) {
            rig.Sign(good, TestKeys().Own);
            rig.Net.Answers[page] = {200, body};
        };
    };
    const Text taken = "Downloaded 1 Trawlbeam update file: tbXML.dll, tbUpdater.exe";
    const Text notByKey = "its signature is not by the key of this program";
    const Text signature = "POST http://u/updates.xml.sig";
    const struct {
        Text Manifest;
        std::function<void(SignedRig&)> Arrange;
        // The reason of a refusal, or the last line.
        Text Line;
        // Requests: manifest, signature, files.
        size_t Requests;
    } cases[] = {
        {good, sign(good), taken, 4},
        // Case of the digits, blanks around a signature and what is not signed do not matter.
        {Manifest(SignedChild("tbXML.dll", "new", UpperCase(FileHash(Sha256Of("new")))) +
                  SignedChild("tbUpdater.exe", "updater") + Child("x", "1", "", "DOWNLOAD='N'")),
         sign(good), taken, 4},
        // Nor does a version that somebody has lowered keep a file away.
        {Manifest(SignedChild("tbXML.dll", "new", FileHash(Sha256Of("new")), "0.9") +
                  SignedChild("tbUpdater.exe", "updater", FileHash(Sha256Of("updater")), "")),
         sign(good), taken, 4},
        {good, [](SignedRig&) {}, "it is not signed (u: refused)", 2},
        {good, answer(signature, ""), "it is not signed (an empty answer)", 2},
        {good, answer(signature, "<html>sorry</html>"), notByKey, 2},
        {good, [&](SignedRig& rig) { rig.Sign(good, TestKeys().Other); }, notByKey, 2},
        {good, sign(Manifest(SignedFiles, "4")), notByKey, 2},
        {good, sign(Manifest(SignedChild("tbXML.dll", "new"))), notByKey, 2},
        {Manifest(SignedFiles + SignedChild("new.dll", "more")), sign(good), notByKey, 2},
        {Manifest(SignedChild("tbUpdater.exe", "updater") + SignedChild("tbXML.dll", "new")), sign(good), notByKey, 2},
        {Manifest(SignedFiles + Child("new.dll", "4")), sign(good), "it is not signed (a file has no SHA256)", 1},
        {Manifest(SignedChild("new.dll", "more", "12")), sign(good), "it is not signed (a file has no SHA256)", 1},
        {Manifest(SignedFiles, "2"), sign(Manifest(SignedFiles, "2")), "number 2 is older than 3", 1},
        {good, answer("GET http://g/5/tbXML.dll", "bad"), "tbXML.dll is not the file that was signed", 3},
        {good, answer("GET http://g/5/tbUpdater.exe", "attacks"), "tbUpdater.exe is not the file that was signed", 4},
    };
    for (const auto& [manifest, arrange, line, requests] : cases) {
        SignedRig rig(own);
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
    // A key that is none takes nothing.
    SignedRig broken("AAAA");
    broken.Sign(good, TestKeys().Own);
    EXPECT_EQ(broken.Check(good), -1);
    EXPECT_EQ(broken.Log.Take().back(), "0 Update refused: " + notByKey);
    // What is installed is not fetched, however new it is called. What is longer than signed does not reach the disk.
    SignedRig same(own);
    same.Place("/app/tbXML.dll", "new");
    const Text three = Manifest(SignedFiles + SignedChild("new.dll", "more"));
    same.Sign(three, TestKeys().Own);
    same.Offer("5/new.dll", "more and more");
    EXPECT_EQ(same.Check(three), -1);
    EXPECT_EQ(same.Log.Take().back(), "0    Download file new.dll failure: g: too long");
    same.Offer("5/new.dll", "more");
    EXPECT_EQ(same.Check(three), 1);
    EXPECT_EQ(same.StagedNames(), "new.dll updates.xml ");
    // A test version is signed beside its manifest; the same number comes again to heal an installation.
    SignedRig test(own);
    test.Set("TestVersion", "7");
    test.Set("LastUpdateVersion", "5");
    test.Program.NeedToUpdate = true;
    test.Net.Answers["POST http://u/Versions/7/updates.xml"] = {200, good};
    test.Sign(good, TestKeys().Own, "Versions/7/");
    EXPECT_EQ(test.Updater.DoCheckForUpdates(false), 1);
}

}  // namespace
}  // namespace tb
