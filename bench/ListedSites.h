// A list of 100,000 sites and what browsers ask about it, the same for every benchmark.
#pragma once

#include <benchmark/benchmark.h>

#include <random>

#include "urlcheck/UrlVerdict.h"

namespace tb {

constexpr int ListedSites = 100000;
constexpr size_t RequestCount = 4096;

inline Text ListedSite(int number) {
    const Text host = "http://www.site" + std::to_string(number) + ".region" + std::to_string(number % 97) + ".example";
    return number % 2 == 0 ? host : host + "/account/" + std::to_string(number % 7);
}

inline void FillList(EvilDB& list) {
    for (int number = 0; number < ListedSites; ++number) list.AddToDB(ListedSite(number), "2", "11/01/2026");
}

// URLs of one kind: "hits" and "deep" are listed, "misses" and "long" are not.
inline std::vector<Text> UrlsOf(const Text& kind) {
    std::mt19937 random(11);
    std::vector<Text> urls;
    while (urls.size() < RequestCount) {
        const int number = static_cast<int>(random() % ListedSites);
        const Text harmless = "http://www.harmless" + std::to_string(number) + ".example/";
        if (kind == "hits") urls.push_back(ListedSite(number) + "/login.html?id=1");
        if (kind == "misses") urls.push_back(harmless + "news/today.html");
        if (kind == "deep") urls.push_back("http://a.b.c.d.e.f.g.h." + ListedSite(number).substr(7));
        if (kind == "long") urls.push_back(harmless + Text(1800, 'p'));
    }
    return urls;
}

// Verdicts on the URLs of one kind, as the channel asks for them.
inline void RunChecks(benchmark::State& state, UrlVerdict& verdict, const Text& kind) {
    std::vector<std::vector<Text>> requests;
    for (const Text& url : UrlsOf(kind)) requests.push_back({"66066", "Check", url});
    Text reply;
    size_t next = 0;
    for (auto _ : state) {
        verdict.CheckEvil(requests[next++ % requests.size()], reply);
        benchmark::DoNotOptimize(reply.data());
    }
}

}  // namespace tb
