// The road of an operation across the border of tbSender.dll, both sides of it in one program.
#include "components/tbSender/SenderLibrary.h"

#include <gmock/gmock.h>

#include "components/tbSender/SenderTransport.h"
#include "components/tbXML/XmlParser.h"
#include "fakes/FakeFiles.h"
#include "fakes/FakeHttp.h"
#include "fakes/FakePlatform.h"

namespace tb {
namespace {

using testing::ElementsAre;
using testing::Pair;

// The seams that the component has opened.
struct Opened {
    Text UserAgent;
    FakeHttp* Http = nullptr;
    FakeFiles* Files = nullptr;
    int Open = 0;
};
Opened* s_Opened = nullptr;

struct CountedHttp : FakeHttp {
    CountedHttp() { ++s_Opened->Open; }
    ~CountedHttp() override { --s_Opened->Open; }
};

SenderSeams MakeSeams(const Text& userAgent) {
    auto http = std::make_unique<CountedHttp>();
    auto files = std::make_unique<FakeFiles>();
    files->Folders = {"/data"};
    *s_Opened = {userAgent, http.get(), files.get(), s_Opened->Open};
    return {std::move(http), std::make_unique<FakeRandom>(), std::move(files)};
}

const void* Entry(std::uint32_t version) { return OfferSenderFace<&MakeSeams>(version); }
const void* NewerEntry(std::uint32_t version) { return version == 99 ? Entry(1) : nullptr; }

class SenderLibraryTest : public testing::Test {
protected:
    SenderLibraryTest() { s_Opened = &m_Component; }

    Text Post(const Text& body = {}) { return m_Sender->PostRequest(m_Servers, "page", body, m_Reply, ""); }

    Opened m_Component;
    void* m_Entry = reinterpret_cast<void*>(&Entry);
    bool m_Cancelled = false;
    std::unique_ptr<SenderLibrary> m_Library = std::make_unique<SenderLibrary>(
        SenderLibrary::Parts{[this] { return m_Entry; }, "Agent/1", [this] { return m_Cancelled; }});
    std::unique_ptr<Sender> m_Sender = m_Library->MakeSender();
    ElementPtr m_Servers = ParseXml("<E N='&lt;&apos;'><Server ACTIVE='Y'>http://one</Server></E>");
    Text m_Reply = "old";
};

TEST_F(SenderLibraryTest, CarriesAllOfAnOperation) {
    EXPECT_TRUE(m_Sender->IsOnline());
    EXPECT_EQ(m_Component.UserAgent, "Agent/1");
    FakeHttp& http = *m_Component.Http;
    const Text bytes("\0<&'\xFF\r\n", 7);
    http.Answers = {{"POST http://one/page", {200, bytes}},
                    {"HEAD http://one/page", {404, "", "HTTP/1.1 404 Not Found\r\n"}},
                    {"HEAD http://one/file", {200, "", "HTTP/1.1 200 OK\r\nLast-Modified: x\r\n"}},
                    {"GET http://one/file", {200, "content"}}};
    m_Sender->Timeout(77);
    m_Sender->Key("me");
    m_Sender->ReplyLimit(1000);
    EXPECT_EQ(Post(bytes) + m_Reply, bytes);
    const HttpRequest request = http.Requests.at(0);
    EXPECT_EQ(request.Body, bytes);
    EXPECT_EQ(request.WaitMilliseconds, 77);
    EXPECT_EQ(m_Sender->Timeout(), 77);
    EXPECT_EQ(request.BodyLimit, 1000U);
    EXPECT_THAT(request.Headers, testing::Contains(Pair("X-Client-Key", "me")));
    ResponseHead head{"old"};
    m_Sender->GetHead(m_Servers, "page", "", head);
    EXPECT_EQ(head.Text, "") << "status 404";
    m_Sender->GetHead(m_Servers, "file", "", head);
    EXPECT_EQ(head.Text, "HTTP/1.1 200 OK\r\nLast-Modified: x\r\n");
    EXPECT_EQ(m_Sender->DownloadFile(m_Servers, "file", "", "/data/\xC5\xBE"), "");
    EXPECT_THAT(m_Component.Files->Contents, ElementsAre(Pair("/data/\xC5\xBE", "content")));
    http.IsThereNetwork = false;
    EXPECT_FALSE(m_Sender->IsOnline());
    EXPECT_EQ(m_Component.Open, 1) << "one transport for all";
}

TEST_F(SenderLibraryTest, GivesErrorsBackAsTextsAndWaitsForTheComponent) {
    m_Entry = nullptr;
    ResponseHead head{"old"};
    m_Sender->GetHead(m_Servers, "file", "", head);
    EXPECT_EQ(head.Text, "");
    EXPECT_TRUE(m_Sender->IsOnline());
    EXPECT_THAT(Post(), testing::HasSubstr("tbSender is missing"));
    m_Entry = reinterpret_cast<void*>(&NewerEntry);
    EXPECT_THAT(Post(), testing::HasSubstr("tbSender has another version"));
    m_Entry = reinterpret_cast<void*>(&Entry);
    m_Reply = "old";
    EXPECT_EQ(Post() + m_Reply, "one: refused");
    m_Component.Http->Answers["GET http://one/file"] = {200, "content"};
    m_Component.Files->FailAt(1);
    EXPECT_EQ(m_Sender->DownloadFile(m_Servers, "file", "", "/data/file"), "61 Disk full");
    m_Cancelled = true;
    EXPECT_EQ(Post(), "cancelled");
    m_Servers = std::make_shared<Element>("<");
    EXPECT_EQ(Post(), std::to_string(XmlErrorNumber) + " XML line 1: \"<\" is followed by no tag name");
    m_Servers = nullptr;
    EXPECT_EQ(Post(), "no usable server");
}

TEST_F(SenderLibraryTest, OperationsOutliveTheirSenderAndLibrary) {
    m_Sender->IsOnline();
    m_Component.Http->Answers["POST http://one/page"] = {200, "outer"};
    int exchanges = 0;
    m_Component.Http->Meanwhile = [&] {
        if (++exchanges > 1) return;
        Text inner;
        m_Library->MakeSender()->PostRequest(m_Servers, "inner", "", inner, "");
        m_Sender->Key("another");
        m_Sender.reset();
        m_Library.reset();
        EXPECT_EQ(m_Component.Open, 1);
    };
    EXPECT_EQ(Post(), "");
    EXPECT_EQ(m_Reply, "outer");
    EXPECT_EQ(exchanges, 2);
    EXPECT_EQ(m_Component.Open, 0);
}

}  // namespace
}  // namespace tb
