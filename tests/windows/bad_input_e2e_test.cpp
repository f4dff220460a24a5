// Arbitrary bytes behind a valid first field: the real program answers as the verdict does in memory, and does not
// grow.
#include <windows.h>

#include <gtest/gtest.h>
#include <psapi.h>

#include <algorithm>
#include <random>

#include "components/tbBHBridge/ChannelClient.h"
#include "platform/win32/ReplyWindow.h"
#include "platform/win32/Win32Files.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UrlVerdict.h"
#include "windows/RunningProgram.h"

namespace tb {
namespace {

constexpr size_t Largest = 65536;

struct NoLog : LogSink {
    void WriteLog(const Text&, LogLevel) noexcept override {}
};

// The same list in this process.
class Model {
public:
    Model() : m_Host(m_Log), m_List(m_Files, m_Host, {}), m_Verdict(m_List, m_Host) {
        for (const char* url : RunningProgram::Listed) m_List.AddToDB(url, "2", "11/21/2026");
    }
    Text Answer(const Text& fields) {
        const BrowserChannel channel(
            [this](const std::vector<Text>& args, Text& reply) { m_Verdict.CheckEvil(args, reply); });
        return channel.Handle("1\t" + fields).Text;
    }

private:
    NoLog m_Log;
    Win32Files m_Files;
    StandaloneVerdictHost m_Host;
    EvilDB m_List;
    UrlVerdict m_Verdict;
};

// Request fields of any bytes but NUL, which ends a text. Unknown commands stay out: their message waits for a user.
class RandomRequests {
public:
    Text Next(size_t length) {
        Text fields = m_Random() % 8 == 0 ? "Allow\t" : "Check\t";
        if (m_Random() % 2 == 0) fields += m_Random() % 2 == 0 ? "http://evil.example/offer" : "https://phish.test";
        while (fields.size() < length) AppendPiece(fields);
        return fields;
    }
    size_t Below(size_t limit) { return m_Random() % limit; }

private:
    void AppendPiece(Text& fields) {
        static const char* const pieces[] = {
            "%",      "%4",        "%41", "%00", "%zz",  "\t",           "/",       "@",
            ":",      ".",         "..",  " ",   "\r\n", "evil.example", "http://", "https://phish.test",
            "0x7f.1", "2130706433"};
        if (m_Random() % 2 == 0) {
            fields += pieces[m_Random() % std::size(pieces)];
        } else {
            fields += static_cast<char>(1 + m_Random() % 255);
        }
    }

    std::mt19937 m_Random{20261121};
};

class BadInput : public testing::Test {
protected:
    BadInput() : m_Client(m_Windows) { m_Client.Locate(); }
    Text Ask(const Text& fields) {
        m_Client.Send(m_Reply.Window(), fields);
        return m_Reply.Take().value_or("(none)");
    }
    PROCESS_MEMORY_COUNTERS Memory() const {
        PROCESS_MEMORY_COUNTERS counters{};
        GetProcessMemoryInfo(m_Program.Process(), &counters, sizeof counters);
        return counters;
    }

    RunningProgram m_Program;
    Win32WindowText m_Windows;
    ChannelClient m_Client;
    ReplyWindow m_Reply;
};

TEST_F(BadInput, IsAnsweredAsTheVerdictDoes) {
    Model model;
    RandomRequests requests;
    int blocked = 0;
    for (int count = 0; count < 1500; ++count) {
        // Mostly short, a few of the full length.
        const size_t length = count % 100 == 0 ? Largest : requests.Below(count % 10 == 0 ? 2000 : 60);
        const Text fields = requests.Next(length);
        const Text expected = model.Answer(fields);
        ASSERT_EQ(Ask(fields), expected) << "request " << count << ": " << Quoted(fields, 200);
        blocked += expected == RunningProgram::Blocked ? 1 : 0;
    }
    EXPECT_GT(blocked, 100);
}

TEST_F(BadInput, LeavesMemoryFlat) {
    constexpr int Requests = 10000;
    constexpr SIZE_T Allowed = 1 << 20;
    RandomRequests requests;
    const auto send = [&](int count) {
        for (int index = 0; index < count; ++index) Ask(requests.Next(requests.Below(index % 100 == 0 ? 4000 : 200)));
    };
    send(1000);
    const PROCESS_MEMORY_COUNTERS before = Memory();
    send(Requests);
    const PROCESS_MEMORY_COUNTERS after = Memory();
    std::printf("private %zu -> %zu, working set %zu -> %zu bytes\n", before.PagefileUsage, after.PagefileUsage,
                before.WorkingSetSize, after.WorkingSetSize);
    ASSERT_GT(before.WorkingSetSize, 0U);
    EXPECT_LT(after.PagefileUsage, before.PagefileUsage + Allowed);
    EXPECT_LT(after.WorkingSetSize, before.WorkingSetSize + Allowed);
}

}  // namespace
}  // namespace tb
