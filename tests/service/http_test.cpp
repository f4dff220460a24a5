#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <deque>

#include "fakes/RecordedLog.h"
#include "fakes/TestFolder.h"
#include "service/web/HttpServer.h"
#include "service/web/ServicePages.h"
#include "sitedb/codec/Encryption.h"

namespace tb {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Bytes to and from a server on loopback.
class Wire {
public:
    Wire(int port, const char* address) : m_Socket(::socket(AF_INET, SOCK_STREAM, 0)) {
        const timeval limit{20, 0};
        ::setsockopt(m_Socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(static_cast<std::uint16_t>(port));
        ::inet_pton(AF_INET, address, &to.sin_addr);
        EXPECT_EQ(::connect(m_Socket, reinterpret_cast<const sockaddr*>(&to), sizeof to), 0);
    }
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;
    ~Wire() { ::close(m_Socket); }

    void Send(const Text& bytes) { ::send(m_Socket, bytes.data(), bytes.size(), MSG_NOSIGNAL); }
    // Until the text has come, the server has closed, or nothing has come for a long time.
    Text ReceiveUntil(const Text& end) {
        Text received;
        char buffer[65536];
        while (end.empty() || received.find(end) == Text::npos) {
            const ssize_t count = ::recv(m_Socket, buffer, sizeof buffer, 0);
            if (count <= 0) return received + (count < 0 && errno == EAGAIN ? "(TIMEOUT)" : "");
            received.append(buffer, static_cast<size_t>(count));
        }
        return received;
    }
    Text ReceiveAll() { return ReceiveUntil(""); }
    void EndSending() { ::shutdown(m_Socket, SHUT_WR); }

private:
    const int m_Socket;
};

class HttpServerTest : public testing::Test {
protected:
    HttpServerTest() {
        Pages pages;
        AddSitePages(pages, Feed);
        AddDocumentPages(pages, Cached);
        AddReportPages(pages, *Queue);
        AddShowPages(pages, Feed, Cached);
        pages.push_back(
            {"/broken", true, false, 0, [](const Question&) -> Reply { throw StoreError("disk is full"); }});
        const auto body = std::make_shared<const Text>(LongSize, 'x');
        pages.push_back({"/long", true, false, 0, [body](const Question&) { return FramedReply(body); }});
        Server = std::make_unique<HttpServer>(std::move(pages), Log);
        Port = Server->Start({"127.0.0.1", "127.0.0.2"}, 0);
    }

    Wire Open(const char* address = "127.0.0.1") { return Wire(Port, address); }
    Text Exchange(const Text& request) {
        Wire wire = Open();
        wire.Send(request);
        return wire.ReceiveAll();
    }
    static Text Get(const Text& path, const Text& method = "GET") {
        return method + " " + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n";
    }
    static Text Post(const Text& path, const Text& body, const Text& headers = "Connection: close\r\n") {
        return "POST " + path + " HTTP/1.1\r\nHost: x\r\n" + headers +
               "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    }
    static Text Opened(const Text& response) {
        RecordedLog log;
        Text plain;
        const size_t body = response.find("\r\n\r\n");
        return body != Text::npos && ChkEncryptString(response.substr(body + 4), plain, log) ? plain : "no frame";
    }

    static constexpr size_t LongSize = 50'000'000;
    TestFolder Folder;
    RecordedLog Log;
    ServiceStore Store{Folder.Path(), ServiceStore::Opening::OrNew};
    SiteFeed Feed{Folder.Path(), Log};
    DocumentCache Cached{Folder.Path()};
    std::unique_ptr<ReportQueue> Queue = std::make_unique<ReportQueue>(Folder.Path(), Log);
    std::unique_ptr<HttpServer> Server;
    int Port = 0;
};

TEST_F(HttpServerTest, ServesDocumentsByEveryMethod) {
    const Text page = "/Reference/defaults.bin";
    EXPECT_THAT(Exchange(Get(page, "HEAD")), AllOf(StartsWith("HTTP/1.1 404 "), Not(HasSubstr("Last-Modified"))));
    const Text xml = "<D Version='1'/>";
    const auto publish = [&](const CivilDate& date) {
        Documents(Store, [now = Date(date)] { return now; }).PublishDefaults(xml);
    };
    publish({1969, 12, 31, 23, 59, 59});
    EXPECT_THAT(Exchange(Get(page)), HasSubstr("\r\nLast-Modified: Wed, 31 Dec 1969 23:59:59 GMT\r\n"));
    publish({2024, 2, 29, 0, 0, 0});
    EXPECT_EQ(Opened(Exchange(Get(page))), xml);
    EXPECT_EQ(Opened(Exchange(Post(page, ""))), xml);
    EXPECT_THAT(Exchange(Get(page, "HEAD")), AllOf(HasSubstr("Last-Modified: Thu, 29 Feb 2024 00:00:00 GMT\r\n"),
                                                   HasSubstr("Content-Length: "), EndsWith("\r\n\r\n")));
}

TEST_F(HttpServerTest, ServesPagesForPeople) {
    EXPECT_THAT(Exchange(Get("/")), AllOf(StartsWith("HTTP/1.1 200 "), HasSubstr("\r\n\r\n<!DOCTYPE html>\n"),
                                          HasSubstr("<title>Trawlbeam - ")));
    for (const char* page : {"/show1.aspx", "/show2.aspx", "/show3.aspx"}) {
        EXPECT_THAT(Exchange(Get(page)), AllOf(HasSubstr("No list of sites is published"), Not(HasSubstr("<td>"))));
    }
    SiteHistory history(Store, [] { return Date(CivilDate{2026, 11, 21, 9, 0, 0}); });
    history.Import({{"http://evil.example", "2", "v"}, {"http://gone.example", "2", "v"}});
    history.Remove({"http://gone.example"});
    Documents(Store).PublishDefaults("<D Version='&lt;1&gt;'/>");
    EXPECT_THAT(Exchange(Get("/show1.aspx")),
                AllOf(HasSubstr("<p>1 malicious site is listed.</p>"), HasSubstr("Last change: 2026-11-21 09:01 UTC")));
    EXPECT_THAT(Exchange(Get("/show2.aspx")),
                AllOf(HasSubstr("<tr><td>2026-11-21 09:01 UTC</td><td>0</td><td>1</td></tr>\n"
                                "<tr><td>2026-11-21 09:00 UTC</td><td>2</td><td>0</td></tr>\n</table>"),
                      HasSubstr("&lt;1&gt;"), Not(HasSubstr("evil"))));
}

// The store is busy: reports wait up to a limit, at which one batch may be under way, and none is lost.
TEST_F(HttpServerTest, KeepsReportsWhileTheStoreIsBusy) {
    const VersionReport report = ReadReport("Key=A%2D1&AppVer=1.0.0&OSVer=6.1.7601.2&IEVer=9.11&OEVer=0").value();
    EXPECT_EQ(report.Client + " " + report.Program + " " + report.System + " " + report.Browser,
              "A-1 1.0.0 6.1.7601.2 9.11");
    std::int64_t taken = 0;
    {
        const Transaction import(Store, Transaction::Kind::Write);
        const auto isRefused = [&] { return Exchange(Post("/Versions.aspx", "Key=k")).starts_with("HTTP/1.1 503 "); };
        do {  // once more: a batch that gets under way meanwhile leaves room
            while (taken <= 20'000 && Queue->Take(report)) ++taken;
        } while (!isRefused() && ++taken <= 20'000);
        EXPECT_THAT(taken, AllOf(testing::Ge(10'000), testing::Le(20'000)));
    }
    Server.reset();
    Queue.reset();
    EXPECT_EQ(Reports(Store).Count(), taken);
}

TEST_F(HttpServerTest, TurnsDownWhatItCannotAnswer) {
    const Text post = "POST /MalDB.aspx HTTP/1.1\r\n";
    Text manyHeaders = "GET /show1.aspx HTTP/1.1\r\n";
    while (manyHeaders.size() < 100'000) manyHeaders += "X-Header: " + Text(80, 'x') + "\r\n";
    const std::tuple<Text, const char*, const char*> cases[] = {
        {Get("/show1.aspx/.."), "404", "no such page"},
        {Post("/nothing", Text(100'000, 'x')), "404", "no such page"},
        {Get("/MalDB.aspx"), "405", "\r\nAllow: POST\r\n"},
        {Get("/show1.aspx", "DELETE"), "405", "\r\nAllow: GET, HEAD\r\n"},
        {Get("/show1.aspx", "BREW"), "400", "cannot be read"},
        {Post("/MalDB.aspx", "TS=" + Text(4094, '1')), "413", "4096 bytes"},
        {post + "Content-Length: 99999999999999999999\r\n\r\n", "413", ""},
        {post + "Content-Length: 5\r\nContent-Length: 6\r\n\r\nTS=12", "400", "no number"},
        {post + "Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n", "411", "Content-Length"},
        {post + "Content-Encoding: gzip\r\nContent-Length: 4\r\n\r\n\x1f\x8b\x08\x01", "415", ""},
        {post + "Content-Type: multipart/form-data; boundary=x\r\nContent-Length: 2\r\n\r\nTS", "415", ""},
        {post + "Connection: close\r\n\r\n", "400", "TS is missing"},
        {Post("/MalDB.aspx", "%&=&&%ZZ=%&T%53%"), "400", "\r\n\r\n"},
        {Get("/" + Text(9000, 'x')), "414", ""},
        {manyHeaders + "\r\n", "400", "cannot be read"},
        {"GET /broken HTTP/1.0\r\n\r\n", "500", "has a problem"},
        {"GET /show1.aspx HTTP/1.1\r\nRange: bytes=0-3\r\nConnection: close\r\n\r\n", "200", "</html>"},
    };
    for (const auto& [request, status, content] : cases) {
        EXPECT_THAT(Exchange(request), AllOf(StartsWith(Text("HTTP/1.1 ") + status), HasSubstr(content)))
            << Quoted(request);
    }
    EXPECT_EQ(Log.Lines, std::vector<Text>{"0 GET /broken: disk is full"});
}

TEST_F(HttpServerTest, KeepsConnectionsUntilABodyIsLeftUnread) {
    Wire wire = Open();
    // Two requests in one piece, then one in many.
    wire.Send(Post("/MalDB.aspx", "TS=1", "") + Post("/MalDB.aspx", "Key=a", ""));
    EXPECT_THAT(wire.ReceiveUntil("TS is missing.\n"), HasSubstr("HTTP/1.1 200 OK"));
    for (const char byte : Text("POST /Versions.aspx HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 8\r\n\r\n")) {
        wire.Send({byte});
    }
    EXPECT_THAT(wire.ReceiveUntil("\r\n\r\n"), HasSubstr("100 Continue"));
    wire.Send("AppVer=1");
    EXPECT_THAT(wire.ReceiveUntil("Key is missing.\n"), StartsWith("HTTP/1.1 400"));
    // What follows a refused body could be anything.
    wire.Send(Post("/nothing", Get("/show1.aspx"), ""));
    const Text rest = wire.ReceiveAll();
    EXPECT_THAT(rest, AllOf(StartsWith("HTTP/1.1 404 "), HasSubstr("Connection: close"), Not(HasSubstr("200 OK"))));
    Wire cut = Open();
    cut.Send("POST /MalDB.aspx HTTP/1.1\r\nContent-Length: 100\r\n\r\nTS=");
    cut.EndSending();
    EXPECT_THAT(cut.ReceiveAll(), StartsWith("HTTP/1.1 400 "));
}

// More than there are places: of clients that send nothing, a byte now and then, or take nothing of a long reply.
TEST_F(HttpServerTest, AnswersOthersWhileManyAreSlow) {
    const std::pair<Text, bool> kinds[] = {
        {"", false}, {"POST /MalDB.aspx HTTP/1.1\r\nX: ", true}, {Get("/long"), false}};
    for (const auto& [begin, drips] : kinds) {
        std::deque<Wire> slow;
        for (int number = 0; number < 270; ++number) slow.emplace_back(Port, "127.0.0.1").Send(begin);
        std::atomic<bool> isDone = false;
        std::thread dripping([&, isDripping = drips] {
            while (isDripping && !isDone) {
                for (Wire& wire : slow) wire.Send("x");
                ::usleep(50'000);
            }
        });
        const auto start = std::chrono::steady_clock::now();
        EXPECT_THAT(Exchange(Get("/show1.aspx")), StartsWith("HTTP/1.1 200 OK")) << begin;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(4'500)) << begin;
        isDone = true;
        dripping.join();
    }
}

TEST_F(HttpServerTest, StopsWithConnectionsOpen) {
    Wire idle = Open();
    Wire kept = Open();
    kept.Send("GET /show1.aspx HTTP/1.1\r\n\r\n");
    kept.ReceiveUntil("</html>");
    // A reply under way is finished.
    Wire reading = Open("127.0.0.2");
    reading.Send(Get("/long"));
    Text received = reading.ReceiveUntil("xxx");
    const auto begin = std::chrono::steady_clock::now();
    std::thread stopping([&] { Server->Stop(); });
    received += reading.ReceiveAll();
    stopping.join();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    EXPECT_THAT(received.size(), testing::Gt(LongSize));
    EXPECT_EQ(idle.ReceiveAll(), "");
    // The port is free again, and one service alone may have it.
    HttpServer next({}, Log);
    EXPECT_EQ(next.Start({"127.0.0.1"}, Port), Port);
    HttpServer another({}, Log);
    EXPECT_THROW(another.Start({"127.0.0.2", "127.0.0.1"}, Port), RuntimeError);
}

}  // namespace
}  // namespace tb
