// A client of the browser channel for scripts and measurements, by the calls that a browser helper makes.
#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cstdio>

#include "base/errors.h"
#include "probe/win32/Probe.h"
#include "probe/win32/ProbeOptions.h"
#include "probe/win32/RoundTrips.h"
#include "probe/win32/Stop.h"

namespace {

constexpr const char* Usage = R"(usage: tbprobe [--caption TEXT] [WHAT]
  (nothing)           reads requests on standard input, one a line: the fields from the command on, joined by tabs;
                      prints the replies, one a line
  --time N [URL ...]  sends N "Check" requests for the URLs in turn; prints the percentiles of their round trips
      --against TEXT  the same for another window, in alternating blocks, and the ratio of the medians
      --blocks K      that many blocks for each window (10)
  --wait SECONDS      returns when the channel is there
  --exit              chooses "Exit" in the tray icon's menu, answers Yes and waits for the end; prints the exit status
  --refuse-exit       the same, but answers No; the program goes on
  --close             asks the window to close, which ends servers of measurements, and waits for the end
  --caption TEXT      talks to the window of that caption instead of to the program's own
  --help, --version   prints this, or the version
Exit status: 0 done, 1 wrong command line or a failure, 2 no channel.
)";

// Without its line feed; false at the end.
bool ReadLine(tb::Text& line) {
    line.clear();
    int character = 0;
    while ((character = std::getc(stdin)) != EOF && character != '\n') line += static_cast<char>(character);
    return character != EOF || !line.empty();
}

void AnswerRequests(const tb::Text& caption) {
    tb::Probe probe(caption);
    tb::Text line;
    while (ReadLine(line)) {
        tb::Text reply = probe.Ask(line);
        // One reply is one line, whatever it holds.
        std::replace_if(
            reply.begin(), reply.end(), [](char one) { return one == '\r' || one == '\n'; }, ' ');
        reply += '\n';
        std::fwrite(reply.data(), 1, reply.size(), stdout);
        std::fflush(stdout);
    }
}

int Ended(int status) {
    std::printf("ended, exit status %d\n", status);
    return status == 0 ? 0 : 1;
}

int Run(const tb::ProbeOptions& options) {
    using Action = tb::ProbeOptions::Action;
    switch (options.What) {
    case Action::Requests: AnswerRequests(options.Caption); break;
    case Action::Time: tb::PrintRoundTrips(options); break;
    case Action::Wait: tb::WaitForChannel(options.Caption, options.Seconds); break;
    case Action::Close: return Ended(tb::CloseServer(options.Caption));
    case Action::Exit: return Ended(tb::ExitThroughTray(options.Caption, true));
    case Action::RefuseExit: return tb::ExitThroughTray(options.Caption, false);
    case Action::Help: std::fputs(Usage, stdout); break;
    case Action::Version: std::puts("tbprobe " TRAWLBEAM_VERSION); break;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    tb::ProbeOptions options;
    try {
        options = tb::ParseProbeOptions({argv + 1, argv + argc});
    } catch (const tb::RuntimeError& error) {
        std::fprintf(stderr, "tbprobe: %s\n%s", error.what(), Usage);
        return 1;
    }
    try {
        return Run(options);
    } catch (const tb::NoChannel& failure) {
        std::fprintf(stderr, "tbprobe: %s\n", failure.Message.c_str());
        return 2;
    } catch (const tb::StillRunning& failure) {
        std::fprintf(stderr, "tbprobe: %s\n", failure.Message.c_str());
        return 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tbprobe: %s\n", failure.what());
        return 1;
    }
}
