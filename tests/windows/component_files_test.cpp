// The files tbSender.dll and tbXML.dll as they are built, from outside.
#include "windows/LoopbackServer.h"

#include <gmock/gmock.h>

#include "components/tbSender/SenderLibrary.h"
#include "components/tbSender/tbSenderFace.h"
#include "components/tbXML/Document.h"
#include "fakes/Raised.h"
#include "platform/win32/ComponentLibrary.h"
#include "platform/win32/Win32Files.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

namespace tb {
namespace {

using testing::HasSubstr;

TEST(ComponentFiles, ALibraryGivesFunctionsOrNull) {
    const ScratchFolder folder;
    ComponentLibrary library(folder.Path() / tbSenderFace::File);
    EXPECT_EQ(library.Function(tbSenderFace::Entry), nullptr);
    std::filesystem::copy_file(BuiltProgram(tbSenderFace::File), library.File());
    EXPECT_NE(library.Function(tbSenderFace::Entry), nullptr) << "once it is there";
    EXPECT_EQ(library.Function("another"), nullptr);
    EXPECT_EQ(ComponentLibrary(tbSenderFace::File).Function(tbSenderFace::Entry), nullptr) << "no full path";
}

TEST(ComponentFiles, TheSenderWorksAcrossItsBorder) {
    LoopbackServer server([](const LoopbackServer::Connection& client, const Text&) {
        client.Send("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nreply");
    });
    ComponentLibrary library(BuiltProgram(tbSenderFace::File));
    const SenderLibrary senders({[&] { return library.Function(tbSenderFace::Entry); }, "Agent/7", nullptr});
    const ElementPtr servers = ParseXml("<E><Server ACTIVE='Y'>" + server.Url("/base") + "</Server></E>");
    const std::unique_ptr<Sender> sender = senders.MakeSender();
    sender->Timeout(DeadlineMs);
    EXPECT_TRUE(sender->IsOnline());
    Text reply;
    EXPECT_EQ(sender->PostRequest(servers, "page", "body", reply, ""), "");
    EXPECT_EQ(reply, "reply");
    EXPECT_THAT(server.Requests().at(0), testing::AllOf(HasSubstr("POST /base/page "), HasSubstr("Agent/7")));
    const ScratchFolder folder;
    Win32Files files;
    EXPECT_EQ(sender->DownloadFile(servers, "file", "", folder.Path() / "file"), "");
    EXPECT_EQ(ReadWholeFile(files, folder.Path() / "file"), "reply");
}

TEST(ComponentFiles, ErrorsOfDocumentsAreRaisedOnThisSide) {
    EXPECT_NE(GetModuleHandleA("tbXML.dll"), nullptr);
    Document document;
    document.LoadXML("<a/>");
    EXPECT_EQ(Raised([&] { document.LoadXML("<a>\n</b>"); }), XmlErrorNumber);
    EXPECT_EQ(document.Root()->XML(), "<a></a>\r\n");
    EXPECT_EQ(Raised([&] { document.Root()->Attribute(1); }), static_cast<std::int32_t>(ErrorNumber::Subscript));
}

// Two manifests, the compiler's and ours, would be none to the system.
TEST(ProgramFiles, HoldOneManifestAndLibrariesNone) {
    const auto manifests = [](const char* name) {
        const auto count = [](HMODULE, LPCSTR, LPSTR, LONG_PTR total) -> BOOL {
            ++*reinterpret_cast<int*>(total);
            return TRUE;
        };
        const HMODULE file = LoadLibraryExW(BuiltProgram(name).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        int total = file == nullptr ? -1 : 0;
        EnumResourceNamesA(file, RT_MANIFEST, count, reinterpret_cast<LONG_PTR>(&total));
        FreeLibrary(file);
        return total;
    };
    for (const char* program : {"Trawlbeam.exe", "tbUpdater.exe", "tbprobe.exe", "components_test.exe"})
        EXPECT_EQ(manifests(program), 1) << program;
    EXPECT_EQ(manifests("tbXML.dll"), 0);
}

}  // namespace
}  // namespace tb
