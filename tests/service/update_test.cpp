#include <gmock/gmock.h>

#include "base/errors.h"
#include "components/tbXML/Document.h"
#include "fakes/RecordedLog.h"
#include "fakes/TestFolder.h"
#include "operator/Commands.h"
#include "refdata/manifest/SignedManifest.h"
#include "service/commands/ServiceCommands.h"
#include "service/signing/OpenSslSignatures.h"
#include "service/web/RequestCheck.h"
#include "service/web/ServicePages.h"
#include "sitedb/codec/Encryption.h"

namespace tb {
namespace {

using testing::HasSubstr;

// A library that the linker made of a version resource with the strings 9.9.9, in a language that it does not list
// first, and 1.2.3.
Text SmallLibrary() {
    std::ifstream file(TRAWLBEAM_SOURCE "/fuzz/corpus/version/small.dll", std::ios::binary);
    return Text(std::istreambuf_iterator<char>(file), {});
}

TEST(FileVersionOf, ReadsTheFirstLanguageAndNothingBehindTheEnd) {
    const Text file = SmallLibrary();
    // What is cut is refused; the sanitizers watch that it is read within what is there.
    const auto read = [](const Text& bytes) {
        const std::vector<char> exact(bytes.begin(), bytes.end());
        const auto version = [&] { return FileVersionOf({exact.data(), exact.size()}).value_or("none"); };
        return TrapOr(Text("refused"), version, [](const RuntimeError&) {});
    };
    EXPECT_EQ(read(file), "1.2.3");
    for (size_t size = 0; size < file.size(); ++size) EXPECT_EQ(read(file.substr(0, size)), "refused") << size;
    // No list of languages stands for language 0 and code page 0, which is not there.
    Text unlisted = file;
    unlisted[file.find(Text("T\0r\0a\0n\0s\0l\0", 12))] = 'X';
    EXPECT_EQ(read(unlisted), "");
    EXPECT_EQ(read("no program"), "refused");
}

class UpdateTest : public testing::Test {
protected:
    UpdateTest() {
        std::filesystem::create_directories(Folder.Path() / "staged" / "Data");
        Stage("tbXML.dll", SmallLibrary());
        Stage("Trawlbeam.chm", "help");
        for (const Text name : {"Trawlbeam.ini", "Data/x.dll", "notes.txt", "new.dll.tmp~"}) Stage(name, "x");
        AddUpdatePages(Served, Cached);
    }
    void Stage(const Text& name, const Text& content) { Folder.Write("staged/" + name, content); }
    Text In(const Text& name) const { return (Folder.Path() / name).string(); }
    // What the command says when it refuses.
    Text Publish(const Words& options) {
        Words words{In("staged")};
        words.insert(words.end(), options.begin(), options.end());
        try {
            PublishUpdateCommand(Folder.Path() / "data", words);
            return "done";
        } catch (const std::exception& error) {
            return error.what();
        }
    }
    // Status and body.
    Text Ask(const Text& path) {
        const Page* page = FindPage(Served, path);
        if (page == nullptr) return "404";
        const Reply reply = page->Answer({"GET", path, {}});
        if (reply.Status == 200 && !reply.Body) return {};
        return reply.Status == 200 ? *reply.Body : std::to_string(reply.Status);
    }

    TestFolder Folder;
    ServiceStore Store{Folder.Path() / "data", ServiceStore::Opening::OrNew};
    UpdateCache Cached{Folder.Path() / "data"};
    Pages Served;
    RecordedLog Log;
};

TEST_F(UpdateTest, APublishedFolderIsServedAsAWhole) {
    EXPECT_EQ(Ask("/updates.xml") + Ask("/updates.bin") + Ask("/Versions/beta/updates.xml"), "");
    EXPECT_EQ(Publish({"--version", "5"}), "done");
    const Text manifest = Ask("/updates.xml");
    Document document;
    document.LoadXML(manifest);
    ASSERT_EQ(document.Root()->Count(), 2) << "what is no installed file, and what lies in folders, is passed over";
    const UpdateFile help = ReadFileElement(**document.begin(), {});
    const UpdateFile library = ReadFileElement(**std::next(document.begin()), {});
    EXPECT_EQ(help.FILE + help.VERSION, "Trawlbeam.chm");
    EXPECT_EQ(library.FILE + " " + library.VERSION, "tbXML.dll 1.2.3");
    EXPECT_EQ(library.SIZE, static_cast<std::int32_t>(SmallLibrary().size()));
    Text plain;
    EXPECT_TRUE(ChkEncryptString(Ask("/updates.bin"), plain, Log));
    EXPECT_EQ(plain, manifest);
    EXPECT_EQ(Ask("/5/tbXML.dll"), SmallLibrary());
    for (const Text path :
         {"/updates.xml.sig", "/5/notes.txt", "/5/TBXML.DLL", "/5/../5/tbXML.dll", "/5/", "/05/tbXML.dll",
          "/4/tbXML.dll", "/99999999999/x", "//tbXML.dll", "/Versions/beta/updates.xml.sig", "/Versions/updates.xml",
          "/Versions//updates.xml", "/Versions/beta/tbXML.dll"}) {
        EXPECT_EQ(Ask(path), "404") << path;
    }

    // A test version has numbers and files of its own; the files of the version before stay for who fetches them.
    Stage("Trawlbeam.chm", "new help");
    EXPECT_EQ(Publish({"--version", "6", "--test", "beta"}), "done");
    EXPECT_EQ(Ask("/updates.xml"), manifest);
    EXPECT_THAT(Ask("/Versions/beta/updates.xml"), HasSubstr("VERSION='6'"));
    const auto helps = [&] {
        return Ask("/5/Trawlbeam.chm") + ", " + Ask("/6/Trawlbeam.chm") + ", " + Ask("/7/Trawlbeam.chm");
    };
    EXPECT_EQ(Publish({"--version", "7"}), "done");
    EXPECT_EQ(helps(), "help, new help, new help");
    EXPECT_EQ(Publish({"--version", "8"}), "done");
    EXPECT_EQ(helps(), "404, new help, new help");

    // Of test versions ten stay, whatever their names.
    for (int number = 9; number <= 18; ++number) {
        EXPECT_EQ(Publish({"--version", std::to_string(number), "--test", "t" + std::to_string(number)}), "done");
    }
    EXPECT_EQ(helps(), "404, 404, new help");

    const Text last = Ask("/updates.xml");
    for (const Text number : {"18", "7"}) EXPECT_THAT(Publish({"--version", number}), HasSubstr("not above 18"));
    for (const Text number : {"0", "19.5", "-9", "2147483648", ""}) {
        EXPECT_THAT(Publish({"--version", number}), HasSubstr("no whole number"));
    }
    Stage("bad.dll", SmallLibrary().substr(0, 1000));
    EXPECT_EQ(Publish({"--version", "19"}), "bad.dll: it ends too early");
    EXPECT_EQ(Publish({"--version", "19", "--test", "../x"}).substr(0, 6), "--test");
    EXPECT_EQ(Ask("/updates.xml"), last) << "what was refused changed nothing";
}

TEST_F(UpdateTest, SignsHereOrTakesWhatWasSignedElsewhere) {
    const Text own = In("own");
    for (const Text key : {"own", "other"}) KeygenCommand({"--out", In(key)});
    EXPECT_THROW(KeygenCommand({"--out", own}), std::exception) << "a key is never replaced";
    EXPECT_EQ(std::filesystem::status(own + ".pem").permissions(), std::filesystem::perms(0600));
    const auto signedText = [](const Text& manifest) { return SignedText(*ParseXml(manifest)); };
    const auto isServedSigned = [&] {
        return OpenSslSignatures().VerifyP256(ReadP256Text(Folder.Read("own.pub")),
                                              Sha256Of(signedText(Ask("/updates.xml"))),
                                              ReadP256Text(Ask("/updates.xml.sig")));
    };
    EXPECT_EQ(Publish({"--version", "5", "--sign", own + ".pem"}), "done");
    EXPECT_TRUE(isServedSigned());
    EXPECT_THAT(Publish({"--version", "6", "--sign", own + ".pub"}), HasSubstr("no private key"));

    const Text made = In("m.xml");
    ManifestCommand({In("staged"), "--version", "6", "--out", made});
    SignCommand({"--key", own + ".pem", made, In("staged")});
    // The text that is signed, byte for byte.
    EXPECT_EQ(signedText(Folder.Read("m.xml")),
              "trawlbeam-update 1\n6\n"
              "Trawlbeam.chm\t4\t106a5842fc5fce6f663176285ed1516dbb1e3d15c05abab12fdca46d60b539b7\n"
              "tbXML.dll\t1264\t" +
                  FileHash(Sha256Of(SmallLibrary())) + "\n");
    EXPECT_THAT(Publish({"--manifest", made, "--key", In("other.pub")}), HasSubstr("not signed by the key"));
    Stage("Trawlbeam.chm", "HELP");
    EXPECT_EQ(Publish({"--manifest", made}), "Trawlbeam.chm: its hash is not the one of the manifest");
    Stage("Trawlbeam.chm", "help");
    EXPECT_EQ(Publish({"--manifest", made, "--key", own + ".pub"}), "done");
    EXPECT_TRUE(isServedSigned());
}

}  // namespace
}  // namespace tb
