// The real program and a service whose answers are broken: it tells each in its log, keeps what it has, and goes on.
#include "windows/LoopbackServer.h"
// Windows' sockets come before all else.
#include <gtest/gtest.h>

#include "platform/win32/Win32Files.h"
#include "shell/helpers/DebugSwitch.h"
#include "sitedb/codec/Encryption.h"
#include "windows/Browser.h"
#include "windows/RunningProgram.h"

namespace tb {
namespace {

Text Answer(const Text& body, const char* status = "200 OK") {
    return Text("HTTP/1.1 ") + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

Text Changed(Text frame) {
    frame.back() = static_cast<char>(frame.back() ^ 1);
    return frame;
}

struct Case {
    Text Reply;
    // In the log within some cycles.
    Text Line;
};

std::vector<Case> Cases() {
    const Text good = EncryptStringChk("202611220000\n0\n+\thttp://new.test\t2\td");
    const Text since = " - TS=202611210900";
    return {{Answer("gone", "500 Broken"), "MalDB.Update: 127.0.0.1"},
            {Answer(""), "MalDB.Update: No data" + since},
            {Answer("<html>come back later</html>"), "MalDB.Update: Invalid data format" + since},
            {Answer(Changed(good)), "MalDB.Update: Invalid data format" + since},
            {Answer(good.substr(0, good.size() / 2)), "MalDB.Update: Invalid data format" + since},
            {Answer(EncryptStringChk("202611220000")), "Malicious Database Update Error: 9"},
            {Answer(EncryptStringChk("202611220000\n\n")), "MalDB.Update: Received update, no data" + since},
            // The last one: the list moves to its stamp, which names no file.
            {Answer(EncryptStringChk("..\\..\\x\n0\n+\thttp://new.test\t2\n+\thttp://new.test\t2\td")),
             "Malicious Database Save Error: 75"}};
}

TEST(BadService, IsToldAndChangesNothing) {
    const std::vector<Case> cases = Cases();
    std::atomic<size_t> current{0};
    const LoopbackServer server([&](const LoopbackServer::Connection& connection, const Text& request) {
        connection.Send(request.find("/MalDB.aspx") != Text::npos ? cases[current].Reply : Answer("", "404 None"));
    });
    const auto folder = std::make_shared<ProgramFolder>();
    folder->WriteSetting("Main", DebugSwitch(), "1");
    folder->WriteData("defaults.bin", EncryptStringChk("<D><G NAME='SERVERS'><E NAME='EVILDBSVR'><Server WEIGHT='100' "
                                                       "ACTIVE='Y'>" +
                                                       server.Url("") +
                                                       "</Server></E></G><G NAME='TIMERS'>"
                                                       "<E NAME='EVILDB_INTERVAL'>0</E></G></D>"));
    const RunningProgram program(folder);
    Browser browser;
    size_t told = folder->Log().size();
    for (; current < cases.size(); ++current) {
        EXPECT_TRUE(Eventually([&] { return folder->Log().find(cases[current].Line, told) != Text::npos; }))
            << cases[current].Line << "\n"
            << folder->Log().substr(told);
        EXPECT_EQ(browser.Ask("Check\thttps://phish.test/x"), RunningProgram::Blocked);
        told = folder->Log().size();
        if (current + 1 == cases.size()) break;
    }
    EXPECT_NE(folder->Log().find("MalDB.Update: incorrect urlEntryParts,+\thttp://new.test\t2, count (2)"), Text::npos);
    EXPECT_EQ(browser.Ask("Check\thttp://new.test"), "Validated: d  (Category: Banking or Credit Card Spoof)");
    int snapshots = 0;
    for (const auto& name : Win32Files().List(folder->Path() / "Data")) {
        snapshots += name.string().rfind("TBDB", 0) == 0 ? 1 : 0;
    }
    EXPECT_EQ(snapshots, 1);
}

}  // namespace
}  // namespace tb
