// The rows of the table that are measured inside one process: million FOLDER, where sites.py and tbtool have put
// the list, its snapshot and the requests; or million --memory SNAPSHOT, in a process of its own. Prints a line a
// figure: name, tab, value; each is the median of five. Loads count the processor's time, so that other programs
// disturb them less; verdicts are single calls by the clock.
#include <time.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <random>

#include "fakes/TestFolder.h"
#include "platform/posix/PosixFiles.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UrlVerdict.h"

namespace {

using tb::Text;
using Path = std::filesystem::path;
using Requests = std::vector<std::vector<Text>>;

constexpr int Runs = 5;
constexpr const char* Stamp = "202611210900";

// The log lines are composed and dropped.
class NoLog : public tb::LogSink {
public:
    void WriteLog(const Text& message, tb::LogLevel /*level*/) noexcept override { Bytes += message.size(); }
    size_t Bytes = 0;
};

struct World {
    explicit World(const Path& folder = {}) : List(std::make_shared<tb::EvilDB>(Files, Host, folder)) {}
    void Load(const Path& snapshot) {
        if (EvilDB.LoadDB(snapshot, 0)) return;
        std::fprintf(stderr, "million: %s does not load\n", snapshot.c_str());
        std::exit(1);
    }

    NoLog Log;
    tb::PosixFiles Files;
    tb::StandaloneVerdictHost Host{Log};
    std::shared_ptr<tb::EvilDB> List;
    tb::EvilDB& EvilDB = *List;
    tb::UrlVerdict Verdict{List, Host};
};

void Print(const char* name, double value) { std::printf("%s\t%.6g\n", name, value); }

double Percentile(std::vector<double> values, double share) {
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

double MedianOf(const std::function<double()>& measure) {
    std::vector<double> values;
    for (int run = 0; run < Runs; ++run) values.push_back(measure());
    return Percentile(values, 0.5);
}

double ProcessorSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double SecondsOf(const std::function<void()>& work) {
    const double start = ProcessorSeconds();
    work();
    return ProcessorSeconds() - start;
}

double ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    double pages = 0;
    file >> pages >> pages;
    return pages * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

double Nanoseconds(std::chrono::steady_clock::duration time) {
    return std::chrono::duration<double, std::nano>(time).count();
}

// Nanoseconds of each single verdict, without what reading the clock takes.
std::vector<double> VerdictTimes(World& world, const Requests& requests) {
    using Clock = std::chrono::steady_clock;
    std::vector<double> readings;
    for (int reading = 0; reading < 1001; ++reading) {
        const auto start = Clock::now();
        readings.push_back(Nanoseconds(Clock::now() - start));
    }
    const double reading = Percentile(readings, 0.5);
    std::vector<double> times;
    times.reserve(requests.size());
    Text reply;
    for (const auto& request : requests) {
        const auto start = Clock::now();
        world.Verdict.CheckEvil(request, reply);
        times.push_back(std::max(Nanoseconds(Clock::now() - start) - reading, 1.0));
    }
    return times;
}

double MedianVerdict(World& world, const Requests& requests) {
    return MedianOf([&] { return Percentile(VerdictTimes(world, requests), 0.5); });
}

Requests RequestsOf(const Path& file) {
    std::ifstream lines(file);
    Requests requests;
    for (Text url; std::getline(lines, url);) requests.push_back({"66066", "Check", url, ""});
    return requests;
}

Text HostOf(int number) { return "http://account" + std::to_string(number * 7919) + ".region.example"; }

// A snapshot of so many sites in the folder.
Path Save(const Path& folder, int count, const std::function<Text(int)>& site) {
    World world(folder);
    for (int number = 0; number < count; ++number) world.EvilDB.AddToDB(site(number), "2", "11/21/2026");
    world.EvilDB.SaveDB(Stamp, world.EvilDB.Fingerprint());
    return folder / ("TBDB" + Text(Stamp) + ".BIN");
}

double LoadSeconds(const Path& snapshot) {
    return MedianOf([&] {
        World world;
        return SecondsOf([&] { world.Load(snapshot); });
    });
}

double ReadAndCheckSeconds(const Path& snapshot) {
    tb::PosixFiles files;
    std::vector<char> buffer(65536);
    return MedianOf([&] {
        return SecondsOf([&] {
            const auto file = files.OpenForReading(snapshot);
            uLong crc = 0;
            while (const size_t read = file->Read(buffer.data(), buffer.size())) {
                crc = crc32(crc, reinterpret_cast<const Bytef*>(buffer.data()), static_cast<uInt>(read));
            }
            if (crc == 0) std::fprintf(stderr, "million: a checksum of nothing\n");
        });
    });
}

// What an entry takes beside its own bytes. The file has fourteen bytes and the stamp, then four an entry.
void Memory(const Path& snapshot) {
    const double before = ResidentBytes();
    World world;
    world.Load(snapshot);
    const double entries = world.EvilDB.LiveCount();
    const double scrambled = static_cast<double>(std::filesystem::file_size(snapshot)) - 26 - 4 * entries;
    Print("bytes an entry", (ResidentBytes() - before - scrambled) / entries);
}

void Verdicts(const Path& folder) {
    World world;
    world.Load(folder / ("TBDB" + Text(Stamp) + ".BIN"));
    const Requests requests = RequestsOf(folder / "urls.txt");
    Print("verdicts a second", MedianOf([&] {
              Text reply;
              const auto start = std::chrono::steady_clock::now();
              for (const auto& request : requests) world.Verdict.CheckEvil(request, reply);
              return static_cast<double>(requests.size()) * 1e9 / Nanoseconds(std::chrono::steady_clock::now() - start);
          }));
    std::vector<double> middle;
    Print("p99 to p50", MedianOf([&] {
              const std::vector<double> times = VerdictTimes(world, requests);
              middle.push_back(Percentile(times, 0.5));
              return Percentile(times, 0.99) / middle.back();
          }));
    Print("p50 ns", Percentile(middle, 0.5));
}

// Requests to hosts below `hosts`, listed ones and others in turn.
Requests Asked(int hosts, const Text& tail) {
    std::mt19937 random(5);
    Requests requests;
    for (int request = 0; request < 50000; ++request) {
        Text url = HostOf(static_cast<int>(random() % static_cast<unsigned>(hosts))) + tail;
        if (request % 2 == 0) url.insert(7, "x");
        requests.push_back({"66066", "Check", url, ""});
    }
    return requests;
}

void Growth() {
    const auto verdict = [](int domains) {
        World world;
        for (int number = 0; number < domains; ++number) world.EvilDB.AddToDB(HostOf(number), "2", "11/21/2026");
        return MedianVerdict(world, Asked(domains, "/login.html?id=1"));
    };
    const double small = verdict(10000);
    Print("growth", verdict(1000000) / small);
}

void OneHost() {
    constexpr int paths = 100000;
    const auto path = [](int number) { return HostOf(0) + "/listed/" + std::to_string(number * 7919) + ".html"; };
    tb::TestFolder one;
    tb::TestFolder many;
    const Path ofOne = Save(one.Path(), paths, path);
    const Path ofMany = Save(many.Path(), paths, [](int number) { return HostOf(number) + "/listed.html"; });
    Print("one host: load", LoadSeconds(ofOne) / LoadSeconds(ofMany));
    Requests there;
    std::mt19937 random(6);
    for (int request = 0; request < 20000; ++request) {
        const Text url = path(static_cast<int>(random() % paths)) + "/login.html?id=1";
        there.push_back(
            {"66066", "Check", request % 2 == 0 ? url : HostOf(0) + "/other" + url.substr(url.size() - 30), ""});
    }
    World lists[2];
    lists[0].Load(ofOne);
    lists[1].Load(ofMany);
    Print("one host: verdict", MedianVerdict(lists[0], there) / MedianVerdict(lists[1], Asked(paths, "/listed.html")));
}

void Loads(const Path& folder) {
    const auto site = [](int number) { return HostOf(number) + (number % 2 == 0 ? "" : "/account/login"); };
    for (const char* name : {"one", "two"}) std::filesystem::create_directories(folder / name);
    const Path million = Save(folder / "one", 1000000, site);
    const Path twoMillions = Save(folder / "two", 2000000, site);
    const double load = LoadSeconds(million);
    Print("load s", load);
    Print("load to read and crc32", load / ReadAndCheckSeconds(million));
    Print("load of two millions", LoadSeconds(twoMillions) / load);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && Text(argv[1]) == "--memory") {
        Memory(argv[2]);
        return 0;
    }
    if (argc != 2) return 2;
    const Path folder = argv[1];
    Verdicts(folder);
    Growth();
    OneHost();
    Loads(folder);
}
