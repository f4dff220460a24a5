// The verdict on 100,000 entries, in one process: CheckEvil as the channel calls it, beside a plain hash map from host
// to prefixes that does the same look-ups on plain text. The last lines give the ratio of the two.
#include <cstdio>
#include <unordered_map>

#include "bench/ListedSites.h"
#include "bench/MedianReporter.h"
#include "platform/posix/PosixFiles.h"
#include "urlcheck/StandaloneVerdictHost.h"

namespace {

using tb::Text;
using tb::TextView;

class NoLog : public tb::LogSink {
public:
    void WriteLog(const Text& message, tb::LogLevel /*level*/) noexcept override {
        benchmark::DoNotOptimize(message.data());
    }
};

// What a straightforward program would do: plain text, one map, no scrambling, no log line, no errors.
class PlainMap {
public:
    void Add(const Text& site) {
        const size_t end = site.find('/', 7);
        m_Sites[site.substr(7, end == Text::npos ? end : end - 7)].push_back(site);
    }
    bool IsListed(const Text& url) const {
        const Text lowered = tb::LowerCase(url);
        const size_t end = lowered.find('/', 7);
        const Text host = lowered.substr(7, end == Text::npos ? end : end - 7);
        const Text rest = end == Text::npos ? Text() : lowered.substr(end);
        for (size_t start = 0;; ++start) {
            const auto found = m_Sites.find(host.substr(start));
            if (found != m_Sites.end()) {
                const Text candidate = lowered.substr(0, 7) + host.substr(start) + rest;
                for (const Text& site : found->second) {
                    if (candidate.compare(0, site.size(), site) == 0) return true;
                }
            }
            start = host.find('.', start);
            if (start == Text::npos || host.find('.', start + 1) == Text::npos) return false;
        }
    }

private:
    std::unordered_map<Text, std::vector<Text>> m_Sites;
};

struct World {
    World() {
        tb::FillList(EvilDB);
        for (int number = 0; number < tb::ListedSites; ++number) Map.Add(tb::ListedSite(number));
    }

    NoLog Log;
    tb::PosixFiles Files;
    tb::StandaloneVerdictHost Host{Log};
    std::shared_ptr<tb::EvilDB> List = std::make_shared<tb::EvilDB>(Files, Host, std::filesystem::path());
    tb::EvilDB& EvilDB = *List;
    tb::UrlVerdict Verdict{List, Host};
    PlainMap Map;
};

World& TheWorld() {
    static World world;
    return world;
}

void Verdict(benchmark::State& state, const Text& kind) { tb::RunChecks(state, TheWorld().Verdict, kind); }

void Plain(benchmark::State& state, const Text& kind) {
    World& world = TheWorld();
    const std::vector<Text> urls = tb::UrlsOf(kind);
    size_t next = 0;
    for (auto _ : state) benchmark::DoNotOptimize(world.Map.IsListed(urls[next++ % urls.size()]));
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const std::vector<Text> kinds{"hits", "misses", "deep", "long"};
    for (const Text& kind : kinds) {
        tb::Register("verdict", kind, &Verdict);
        tb::Register("plain map", kind, &Plain);
    }
    tb::MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n%d entries            verdict ns   plain map ns   ratio\n", tb::ListedSites);
    for (const Text& kind : kinds) {
        const double verdict = reporter.Median("verdict/" + kind);
        const double plain = reporter.Median("plain map/" + kind);
        std::printf("%-22s %12.0f %14.0f %7.2f\n", kind.c_str(), verdict, plain, verdict / plain);
    }
}
