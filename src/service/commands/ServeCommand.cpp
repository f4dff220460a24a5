#include <csignal>
#include <cstdio>

#include "base/errors.h"
#include "base/numbers.h"
#include "commandline/Options.h"
#include "platform/posix/SystemClock.h"
#include "service/commands/ServiceCommands.h"
#include "service/web/HttpServer.h"
#include "service/web/ServicePages.h"

namespace tb {

namespace {

constexpr int DefaultPort = 8765;
constexpr int LoopbackHosts = 10;

// Standard error, a line with its moment.
class ErrorLog : public LogSink {
public:
    void WriteLog(const Text& message, LogLevel level) noexcept override {
        if (level != LogLevel::Always) return;
        Trap([&] { std::fputs(Visible(FormatDateTime(SystemClock().Now()) + " " + message + "\n").c_str(), stderr); },
             [](const RuntimeError&) {});
    }
};

struct Listening {
    std::vector<Text> Addresses;
    int Port = DefaultPort;
};

// --listen may be given several times, which the options of other commands may not.
Listening ReadOptions(const Words& words) {
    Listening listening;
    Words others;
    for (size_t index = 0; index < words.size(); ++index) {
        if (words[index] != "--listen") {
            others.push_back(words[index]);
            continue;
        }
        if (++index == words.size()) throw UsageError("--listen needs a value");
        listening.Addresses.push_back(words[index]);
    }
    const Options options(others, {"--port"});
    if (!options.Words().empty()) throw UsageError("unexpected " + options.Words().front());
    if (options.Has("--port")) {
        const Text& port = options.Require("--port");
        const bool isNumber = !port.empty() && port.size() <= 5 && port.find_first_not_of("0123456789") == Text::npos;
        listening.Port = isNumber ? ToInt32(port) : -1;
        if (listening.Port < 0 || listening.Port > 65535) throw UsageError("--port takes a number from 0 to 65535");
    }
    if (listening.Addresses.empty()) {
        for (int host = 1; host <= LoopbackHosts; ++host) {
            listening.Addresses.push_back("127.0.0." + std::to_string(host));
        }
    }
    return listening;
}

// The signals that end the service, kept from every thread for the one that waits for them.
class EndSignals {
public:
    EndSignals() {
        sigemptyset(&m_Signals);
        sigaddset(&m_Signals, SIGTERM);
        sigaddset(&m_Signals, SIGINT);
        pthread_sigmask(SIG_BLOCK, &m_Signals, nullptr);
        // Whoever reads our output may leave first.
        std::signal(SIGPIPE, SIG_IGN);
    }
    void Wait() {
        int signal = 0;
        while (sigwait(&m_Signals, &signal) != 0) {
        }
    }

private:
    sigset_t m_Signals{};
};

}  // namespace

void ServeCommand(const std::filesystem::path& folder, const Words& words) {
    const Listening listening = ReadOptions(words);
    EndSignals signals;
    ErrorLog log;
    SiteFeed feed(folder, log);
    DocumentCache documents(folder);
    ReportQueue reports(folder, log);
    SubmissionIntake submissions(folder);
    UpdateCache updates(folder);
    Pages pages;
    AddSitePages(pages, feed);
    AddDocumentPages(pages, documents);
    AddReportPages(pages, reports);
    AddShowPages(pages, feed, documents);
    AddSubmissionPages(pages, submissions, log);
    AddUpdatePages(pages, updates);
    HttpServer server(std::move(pages), log);
    const int port = server.Start(listening.Addresses, listening.Port);
    const Publication latest = feed.Changes()->Latest();
    const Text list = latest.IsNone() ? Text("no list is published yet, clients keep what they have")
                                      : std::to_string(latest.Sites) + " sites as of " + latest.Stamp;
    std::printf("listening on port %d of %s; %s\n", port, Join(listening.Addresses, ", ").c_str(), list.c_str());
    std::fflush(stdout);
    signals.Wait();
    server.Stop();
    std::printf("stopped\n");
}

}  // namespace tb
