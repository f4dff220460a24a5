#include <chrono>
#include <cstdio>

#include "operator/Commands.h"
#include "operator/LastLine.h"
#include "operator/Options.h"
#include "operator/SiteList.h"
#include "operator/StandardStreams.h"
#include "platform/posix/PosixFiles.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UrlVerdict.h"

namespace tb {

namespace {

using Stopwatch = std::chrono::steady_clock;

long long MillisecondsSince(Stopwatch::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Stopwatch::now() - start).count();
}

void LoadSnapshot(EvilDB& evilDB, const Text& path, const LastLine& log) {
    if (evilDB.LoadDB(path, 0)) return;
    throw InputError(path + ": " + log.Or("no intact snapshot (version, fingerprint or stamp is wrong)"));
}

// The reply line to one request line; a note on stderr for one that the channel would not answer.
Text Answer(const BrowserChannel& channel, const Text& line, size_t number) {
    const ChannelResult result = channel.Handle(line);
    const char* note = nullptr;
    switch (result.What) {
    case ChannelResult::Kind::Reply: return result.Text;
    case ChannelResult::Kind::Nothing: note = "empty, which the channel takes for its own clearing"; break;
    case ChannelResult::Kind::WakeUp: note = "a wake-up, which gets no reply"; break;
    case ChannelResult::Kind::Broken: note = "no number in the first field, which ends the program"; break;
    }
    std::fprintf(stderr, "tbtool: line %zu: %s\n", number, note);
    return {};
}

}  // namespace

void CheckCommand(const std::vector<Text>& words) {
    const Options options(words, {"--list", "--snapshot"}, {"--stats"});
    if (!options.Words().empty()) throw UsageError("unexpected " + options.Words().front());
    if (options.Has("--list") == options.Has("--snapshot")) throw UsageError("give either --list or --snapshot");

    const auto loadStart = Stopwatch::now();
    PosixFiles files;
    LastLine log;
    StandaloneVerdictHost host(log);
    EvilDB evilDB(files, host, {});
    std::int32_t entries = 0;
    evilDB.LogMessage.Connect([&](const Text& line, LogLevel level) { log.WriteLog(line, level); });
    if (options.Has("--list")) {
        AddSiteList(evilDB, files, options.Require("--list"));
    } else {
        LoadSnapshot(evilDB, options.Require("--snapshot"), log);
    }
    entries = evilDB.LiveCount();
    const long long loadTime = MillisecondsSince(loadStart);

    UrlVerdict verdict(evilDB, host);
    const BrowserChannel channel([&](const std::vector<Text>& args, Text& reply) { verdict.CheckEvil(args, reply); });
    const auto checkStart = Stopwatch::now();
    size_t requests = 0;
    Text line;
    for (LineReader lines(0); lines.Next(line);) WriteStandardOutput(Answer(channel, line, ++requests) + "\n");
    FlushStandardOutput();
    if (options.Has("--stats")) {
        std::fprintf(stderr, "entries=%d load_ms=%lld requests=%zu check_ms=%lld\n", entries, loadTime, requests,
                     MillisecondsSince(checkStart));
    }
}

}  // namespace tb
