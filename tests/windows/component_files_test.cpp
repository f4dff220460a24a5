// The files tbSender.dll and tbXML.dll as they are built, from outside.
#include "windows/LoopbackServer.h"

#include <gmock/gmock.h>

#include <exception>

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
    Win32Files().Append(library.File(), "no program at all");
    EXPECT_EQ(library.Function(tbSenderFace::Entry), nullptr);
    EXPECT_EQ(ComponentLibrary(tbSenderFace::File).Function(tbSenderFace::Entry), nullptr) << "no full path";
    ComponentLibrary built(BuiltProgram(tbSenderFace::File));
    void* const entry = built.Function(tbSenderFace::Entry);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(built.Function("another"), nullptr);
    EXPECT_EQ(reinterpret_cast<const void* (*)(std::uint32_t)>(entry)(tbSenderFace::Version + 1), nullptr);
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
    EXPECT_THAT(sender->DownloadFile(servers, "file", "", folder.Path() / "none" / "file"), HasSubstr("76 "));
}

TEST(ComponentFiles, ErrorsOfDocumentsAreRaisedOnThisSide) {
    EXPECT_NE(GetModuleHandleA("tbXML.dll"), nullptr);
    Document document;
    document.LoadXML("<a/>");
    Text complaint;
    Trap([&] { document.LoadXML("<a>\n</b>"); }, [&](const RuntimeError& error) { complaint = error.Line(); });
    EXPECT_EQ(complaint, std::to_string(XmlErrorNumber) + " XML line 2: </b> stands where </a> is due");
    EXPECT_EQ(std::uncaught_exceptions(), 0);
    EXPECT_EQ(document.Root()->XML(), "<a></a>\r\n");
    EXPECT_EQ(Raised([&] { document.Root()->Attribute(1); }), static_cast<std::int32_t>(ErrorNumber::Subscript));
}

}  // namespace
}  // namespace tb
