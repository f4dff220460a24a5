// Arbitrary bytes behind a valid first field: the real program answers as the verdict does in memory, and does not
// grow.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/win32/Win32Files.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UrlVerdict.h"
#include "windows/Browser.h"
#include "windows/FlatMemory.h"
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
    explicit RandomRequests(bool allows) : m_Allows(allows) {}
    Text Next(size_t length) {
        const bool allow = m_Allows && m_Random() % 8 == 0;
        Text fields = allow ? "Allow\thttp://allowed.example/" : "Check\t";
        if (!allow && m_Random() % 2 == 0)
            fields += m_Random() % 2 == 0 ? "http://evil.example/offer" : "https://phish.test";
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

    const bool m_Allows;
    std::mt19937 m_Random{20261121};
};

class BadInput : public testing::Test {
protected:
    RunningProgram m_Program;
    Browser m_Browser;
};

TEST_F(BadInput, IsAnsweredAsTheVerdictDoes) {
    Model model;
    RandomRequests requests(true);
    int blocked = 0;
    for (int count = 0; count < 1500; ++count) {
        // Mostly short, a few of the full length.
        const size_t length = count % 100 == 0 ? Largest : requests.Below(count % 10 == 0 ? 2000 : 60);
        const Text fields = requests.Next(length);
        const Text expected = model.Answer(fields);
        ASSERT_EQ(m_Browser.Ask(fields), expected) << "request " << count << ": " << Quoted(fields, 200);
        blocked += expected == RunningProgram::Blocked ? 1 : 0;
    }
    EXPECT_GT(blocked, 100);
}

TEST_F(BadInput, LeavesMemoryFlat) {
    RandomRequests requests(false);
    const auto send = [&](int count) {
        for (int index = 0; index < count; ++index)
            m_Browser.Ask(requests.Next(requests.Below(index % 100 == 0 ? 4000 : 200)));
    };
    send(1000);
    const FlatMemory memory(m_Program.Process());
    send(10000);
    memory.Expect("10000 requests");
}

}  // namespace
}  // namespace tb
