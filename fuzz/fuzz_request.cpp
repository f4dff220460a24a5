// Request lines as any process may set them into the text box: a line is answered or refused, and the answer is one of
// those that the channel knows.
#include <cstdlib>

#include "fuzz/MemoryFiles.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UrlVerdict.h"

namespace {

class NoLog : public tb::LogSink {
public:
    void WriteLog(const tb::Text& /*message*/, tb::LogLevel /*level*/) noexcept override {}
};

struct Service {
    Service() {
        evilDB.AddToDB("http://evil.example/a%2fb", "2", "11/01/2026");
        evilDB.AddToDB("http://evil.example", "1", "11/01/2026");
        evilDB.AddToDB("https://evil.example", "2", "11/01/2026");
        evilDB.AddToDB("http://10.1.2.3", "2", "11/01/2026");
        evilDB.AddToDB("http://label", "2", "11/01/2026");
        evilDB.AddToDB("http://bad.example", "none", "11/01/2026");
        evilDB.AddToDB("http://unknown.example", "77", "11/01/2026");
    }

    NoLog log;
    tb::MemoryFiles files{""};
    tb::StandaloneVerdictHost host{log};
    std::shared_ptr<tb::EvilDB> list = std::make_shared<tb::EvilDB>(files, host, "Data");
    tb::EvilDB& evilDB = *list;
    tb::BrowserChannel channel{std::make_shared<tb::UrlVerdict>(list, host)};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Service service;
    const tb::Text line(reinterpret_cast<const char*>(data), size);
    // As it is, and as a check whatever it holds.
    for (const tb::Text& text : {line, "1\tCheck\t" + line, "1\tCheck\thttp://ok.example\t" + line}) {
        const tb::ChannelResult result = service.channel.Handle(text);
        if (result.What != tb::ChannelResult::Kind::Reply) continue;
        const bool known =
            result.Text.empty() || result.Text == "OK" || result.Text.rfind("Validated: 11/01/2026  (", 0) == 0;
        if (!known) std::abort();
    }
    return 0;
}
