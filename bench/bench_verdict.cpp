// The verdict on 100,000 entries, in one process: CheckEvil as the channel calls it, beside a plain hash map from host
// to prefixes that does the same look-ups on plain text. The last lines give the ratio of the two.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <unordered_map>

#include "platform/posix/PosixFiles.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UrlVerdict.h"

namespace {

using tb::Text;
using tb::TextView;

constexpr int EntryCount = 100000;
constexpr size_t RequestCount = 4096;

class NoLog : public tb::LogSink {
public:
    void WriteLog(const Text& message, tb::LogLevel /*level*/) noexcept override {
        benchmark::DoNotOptimize(message.data());
    }
};

Text Site(int number) {
    const Text host = "http://www.site" + std::to_string(number) + ".region" + std::to_string(number % 97) + ".example";
    return number % 2 == 0 ? host : host + "/account/" + std::to_string(number % 7);
}

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
        for (int number = 0; number < EntryCount; ++number) {
            EvilDB.AddToDB(Site(number), "2", "11/01/2026");
            Map.Add(Site(number));
        }
        std::mt19937 random(11);
        for (size_t index = 0; index < RequestCount; ++index) {
            const int number = static_cast<int>(random() % EntryCount);
            const Text site = Site(number);
            Requests["hits"].push_back(site + "/login.html?id=1");
            Requests["misses"].push_back("http://www.harmless" + std::to_string(number) + ".example/news/today.html");
            Requests["deep"].push_back("http://a.b.c.d.e.f.g.h." + site.substr(7));
            Requests["long"].push_back("http://www.harmless" + std::to_string(number) + ".example/" + Text(1800, 'p'));
        }
    }

    NoLog Log;
    tb::PosixFiles Files;
    tb::StandaloneVerdictHost Host{Log};
    tb::EvilDB EvilDB{Files, Host, {}};
    tb::UrlVerdict Verdict{EvilDB, Host};
    PlainMap Map;
    std::map<Text, std::vector<Text>> Requests;
};

World& TheWorld() {
    static World world;
    return world;
}

void Verdict(benchmark::State& state, const Text& kind) {
    World& world = TheWorld();
    std::vector<std::vector<Text>> requests;
    for (const Text& url : world.Requests[kind]) requests.push_back({"66066", "Check", url});
    Text reply;
    size_t next = 0;
    for (auto _ : state) {
        world.Verdict.CheckEvil(requests[next++ % RequestCount], reply);
        benchmark::DoNotOptimize(reply.data());
    }
}

void Plain(benchmark::State& state, const Text& kind) {
    World& world = TheWorld();
    const std::vector<Text>& requests = world.Requests[kind];
    size_t next = 0;
    for (auto _ : state) benchmark::DoNotOptimize(world.Map.IsListed(requests[next++ % RequestCount]));
}

// Prints the usual table and keeps the medians.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") m_Medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
        }
    }
    void PrintRatios(const std::vector<Text>& kinds) const {
        std::printf("\n%d entries            verdict ns   plain map ns   ratio\n", EntryCount);
        for (const Text& kind : kinds) {
            const double verdict = m_Medians.at("verdict/" + kind);
            const double plain = m_Medians.at("plain map/" + kind);
            std::printf("%-22s %12.0f %14.0f %7.2f\n", kind.c_str(), verdict, plain, verdict / plain);
        }
    }

private:
    std::map<Text, double> m_Medians;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const std::vector<Text> kinds{"hits", "misses", "deep", "long"};
    for (const Text& kind : kinds) {
        for (const auto& [name, function] : {std::pair("verdict/", &Verdict), std::pair("plain map/", &Plain)}) {
            benchmark::RegisterBenchmark((Text(name) + kind).c_str(), function, kind)
                ->MinTime(0.2)
                ->Repetitions(5)
                ->ReportAggregatesOnly();
        }
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios(kinds);
}
