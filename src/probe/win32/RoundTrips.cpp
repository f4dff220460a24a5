#include "probe/win32/RoundTrips.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "probe/win32/Probe.h"

namespace tb {

namespace {

using Stopwatch = std::chrono::steady_clock;

constexpr std::int32_t WarmUpRequests = 50;

// The round trips to one window.
class Series {
public:
    Series(const Text& caption, const std::vector<Text>& urls) : m_Caption(caption), m_Probe(caption) {
        for (const Text& url : urls) m_Requests.push_back(Text("Check") + FieldSeparator + url);
        for (std::int32_t count = 0; count < WarmUpRequests; ++count) Measure();
        m_Times.clear();
    }

    void Run(std::int32_t requests) {
        for (std::int32_t count = 0; count < requests; ++count) Measure();
    }

    // By the nearest rank.
    double Percentile(double part) {
        std::sort(m_Times.begin(), m_Times.end());
        const auto rank = static_cast<size_t>(std::ceil(part * static_cast<double>(m_Times.size())));
        return m_Times[std::max<size_t>(rank, 1) - 1];
    }

    void Print() {
        std::printf("%s: requests=%zu p50_us=%.1f p90_us=%.1f p99_us=%.1f max_us=%.1f\n", m_Caption.c_str(),
                    m_Times.size(), Percentile(0.5), Percentile(0.9), Percentile(0.99), Percentile(1));
    }

private:
    void Measure() {
        const Text& request = m_Requests[m_Next++ % m_Requests.size()];
        const auto start = Stopwatch::now();
        m_Probe.Ask(request);
        m_Times.push_back(std::chrono::duration<double, std::micro>(Stopwatch::now() - start).count());
    }

    Text m_Caption;
    Probe m_Probe;
    std::vector<Text> m_Requests;
    std::vector<double> m_Times;
    size_t m_Next = 0;
};

void PrintComparison(Series& first, Series& second, const ProbeOptions& options) {
    for (std::int32_t block = 0; block < options.Blocks; ++block) {
        const std::int32_t requests = options.Count / options.Blocks + (block < options.Count % options.Blocks ? 1 : 0);
        // Who goes first alternates too: a drift of the machine's speed favours neither.
        Series& leader = block % 2 == 0 ? first : second;
        Series& follower = block % 2 == 0 ? second : first;
        leader.Run(requests);
        follower.Run(requests);
    }
    first.Print();
    second.Print();
    std::printf("ratio=%.3f\n", first.Percentile(0.5) / second.Percentile(0.5));
}

}  // namespace

void PrintRoundTrips(const ProbeOptions& options) {
    std::vector<Text> urls = options.URLs;
    if (urls.empty()) urls = {"http://evil.example/offer", "http://www.harmless.test/page?number=1"};
    Series series(options.Caption, urls);
    if (!options.Against.empty()) {
        Series other(options.Against, urls);
        PrintComparison(series, other, options);
        return;
    }
    series.Run(options.Count);
    series.Print();
}

}  // namespace tb
