#include <chrono>
#include <cstdio>

#include "base/errors.h"
#include "commandline/InputFiles.h"
#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "operator/Commands.h"
#include "operator/LastLine.h"
#include "operator/ReferenceFile.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/SystemClock.h"
#include "sitedb/OverDB.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UrlVerdict.h"

namespace tb {

namespace {

using Stopwatch = std::chrono::steady_clock;

long long MillisecondsSince(Stopwatch::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Stopwatch::now() - start).count();
}

// Judges with overrides, which change in memory only, and with the categories of a reference document.
class CheckHost : public StandaloneVerdictHost {
public:
    CheckHost(LogSink& log, OverDB& overrides, const ReferenceFile& reference)
        : StandaloneVerdictHost(log), m_Overrides(overrides), m_Reference(reference) {}

    // Without overrides there would be nothing but lines for the log, which nobody reads any more.
    bool IsOverride(const Text& url) override { return m_Overrides.Count() != 0 && m_Overrides.IsOverride(url); }
    void AllowSite(const Text& url) override { m_Overrides.AddToDB(url); }
    Text CategoryName(const Text& id) override { return m_Reference.CategoryName(id); }

private:
    OverDB& m_Overrides;
    const ReferenceFile& m_Reference;
};

// `log` hears the overrides.
void LoadOverrides(OverDB& overrides, Files& files, const Text& path, const LastLine& log) {
    try {
        // A load would make a file that is not there.
        files.OpenForReading(path);
    } catch (const RuntimeError& error) {
        throw UnreadableFile(path, error, "a file of overrides");
    }
    overrides.LoadDB();
    const Text failure = log.Or({});
    if (!failure.empty()) throw InputError(path + ": " + failure);
}

void LoadSnapshot(EvilDB& evilDB, const Text& path, const LastLine& log) {
    if (evilDB.LoadDB(path, 0)) return;
    throw InputError(path + ": " + log.Or("no intact snapshot (version, fingerprint or stamp is wrong)"));
}

// Notes on stderr that the channel would not answer a request.
void NoteUnanswered(ChannelResult::Kind what, size_t number) {
    const char* note = nullptr;
    switch (what) {
    case ChannelResult::Kind::Reply: return;
    case ChannelResult::Kind::Nothing: note = "empty, which the channel takes for its own clearing"; break;
    case ChannelResult::Kind::WakeUp: note = "a wake-up, which gets no reply"; break;
    case ChannelResult::Kind::Broken: note = "no number in the first field, which ends the program"; break;
    }
    std::fprintf(stderr, "tbtool: line %zu: %s\n", number, note);
}

// The third field of a request, as far as there is one, in the form that the list is asked for.
TextView UrlOf(TextView request) {
    const size_t command = request.find('\t');
    if (command == TextView::npos) return {};
    const size_t url = request.find('\t', command + 1);
    if (url == TextView::npos) return {};
    request.remove_prefix(url + 1);
    return WithoutTrailingSlashes(request.substr(0, request.find('\t')));
}

// Tells the list the URLs of the next requests that have been read already; how many requests these are.
size_t Expect(EvilDB& evilDB, TextView buffered) {
    constexpr size_t together = 32;
    std::vector<TextView> urls;
    urls.reserve(together);
    for (size_t end; urls.size() < together && (end = buffered.find('\n')) != TextView::npos;) {
        urls.push_back(UrlOf(buffered.substr(0, end)));
        buffered.remove_prefix(end + 1);
    }
    evilDB.Expect(urls);
    return urls.size();
}

// The number of lines judged.
size_t AnswerAll(const std::shared_ptr<EvilDB>& list, VerdictHost& host) {
    const BrowserChannel channel(std::make_shared<UrlVerdict>(list, host));
    size_t requests = 0;
    size_t expected = 0;
    ChannelResult result;
    // Of the requests that came together.
    Text replies;
    LineReader lines(0);
    for (TextView line; lines.Next(line);) {
        channel.Handle(line, result);
        ++requests;
        if (result.What == ChannelResult::Kind::Reply) {
            replies += result.Text;
        } else {
            NoteUnanswered(result.What, requests);
        }
        replies += '\n';
        if (expected > 0) --expected;
        if (expected == 0) expected = Expect(*list, lines.Buffered());
        if (expected > 0) continue;
        // The next line may have to be waited for.
        WriteStandardOutput(replies);
        replies.clear();
    }
    WriteStandardOutput(replies);
    FlushStandardOutput();
    return requests;
}

}  // namespace

void CheckCommand(const std::vector<Text>& words) {
    const Options options(words, {"--list", "--snapshot", "--overrides", "--reference"}, {"--stats"});
    if (!options.Words().empty()) throw UsageError("unexpected " + options.Words().front());
    if (options.Has("--list") == options.Has("--snapshot")) throw UsageError("give either --list or --snapshot");

    PosixFiles files;
    SystemClock clock;
    LastLine log;
    const auto toLog = [&](const Text& line, LogLevel level) { log.WriteLog(line, level); };
    const ReferenceFile reference =
        options.Has("--reference") ? ReferenceFile(files, options.Require("--reference")) : ReferenceFile();
    OverDB overrides(files, clock, options.Has("--overrides") ? options.Require("--overrides") : Text());
    overrides.LogMessage.Connect(toLog);
    if (options.Has("--overrides")) LoadOverrides(overrides, files, options.Require("--overrides"), log);
    CheckHost host(log, overrides, reference);
    const auto list = std::make_shared<EvilDB>(files, host, std::filesystem::path());
    EvilDB& evilDB = *list;
    evilDB.LogMessage.Connect(toLog);

    const auto loadStart = Stopwatch::now();
    if (options.Has("--list")) {
        ForEachSiteLine(files, options.Require("--list"),
                        [&](size_t, const std::vector<Text>& site) { evilDB.AddToDB(site[0], site[1], site[2]); });
    } else {
        LoadSnapshot(evilDB, options.Require("--snapshot"), log);
    }
    const std::int32_t entries = evilDB.LiveCount();
    const long long loadTime = MillisecondsSince(loadStart);

    const auto checkStart = Stopwatch::now();
    const size_t requests = AnswerAll(list, host);
    if (options.Has("--stats")) {
        std::fprintf(stderr, "entries=%d load_ms=%lld requests=%zu check_ms=%lld\n", entries, loadTime, requests,
                     MillisecondsSince(checkStart));
    }
}

}  // namespace tb
