// Keeping the list of malicious sites: loading a snapshot, verified, beside reading the same file and taking zlib's
// CRC-32 of it; taking an update of 10,000 lines in, with its snapshot saved, to the disk and to nowhere: what the
// system itself takes to write the file differs much between machines; the same under a guard, and the whole list anew.
// Times are those of the processor, so waiting for the disk does not count. The last lines give the ratios.
#include <zlib.h>

#include <cstdio>

#include "bench/ListedSites.h"
#include "bench/MedianReporter.h"
#include "fakes/FakeSender.h"
#include "fakes/TestFolder.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/SystemClock.h"
#include "sitedb/codec/Encryption.h"

namespace {

using tb::Text;

constexpr int UpdateLines = 10000;
constexpr const char* Stamp = "202611210900";

class Host : public tb::EvilDBHost {
public:
    Text CategoryName(const Text& id) override { return id; }
    bool IsDebugMode() override { return false; }
    tb::ElementPtr UpdateServers() override { return std::make_shared<tb::Element>(); }
    std::unique_ptr<tb::Sender> MakeUpdateSender() override { return Web.Factory()(); }

    tb::FakeWeb Web;
};

// Takes what is written and drops it.
class NoDisk : public tb::PosixFiles {
public:
    std::unique_ptr<tb::FileWriter> OpenForWriting(const std::filesystem::path& /*path*/) override {
        return std::make_unique<Writer>();
    }
    void Replace(const std::filesystem::path& /*from*/, const std::filesystem::path& /*to*/) override {}

private:
    class Writer : public tb::FileWriter {
    public:
        void Write(tb::TextView bytes) override { benchmark::DoNotOptimize(bytes.data()); }
        void Finish() override {}
    };
};

// A folder with the snapshot of so many sites.
struct Snapshot {
    explicit Snapshot(int count) {
        tb::EvilDB list(Files, Surroundings, Folder.Path());
        for (int number = 0; number < count; ++number) list.AddToDB(tb::ListedSite(number), "2", "11/01/2026");
        list.SaveDB(Stamp, list.Fingerprint());
    }

    std::filesystem::path File() const { return Folder.Path() / ("TBDB" + Text(Stamp) + ".BIN"); }

    tb::TestFolder Folder;
    tb::PosixFiles Files;
    Host Surroundings;
};

Snapshot& SnapshotOf(int count) {
    static std::map<int, Snapshot> snapshots;
    return snapshots.try_emplace(count, count).first->second;
}

void ReadAndCheck(benchmark::State& state, int count) {
    Snapshot& snapshot = SnapshotOf(count);
    std::vector<char> buffer(65536);
    for (auto _ : state) {
        const auto file = snapshot.Files.OpenForReading(snapshot.File());
        uLong crc = 0;
        while (const size_t read = file->Read(buffer.data(), buffer.size())) {
            crc = crc32(crc, reinterpret_cast<const Bytef*>(buffer.data()), static_cast<uInt>(read));
        }
        benchmark::DoNotOptimize(crc);
    }
}

void Load(benchmark::State& state, int count) {
    Snapshot& snapshot = SnapshotOf(count);
    tb::EvilDB list(snapshot.Files, snapshot.Surroundings, snapshot.Folder.Path());
    for (auto _ : state) {
        if (!list.LoadDB(snapshot.File(), 0) || list.LiveCount() != count) state.SkipWithError("not loaded");
    }
}

// Replaces half as many sites as it has lines: those that go are spread over the whole list.
Text UpdateReply(const Text& stamp, int count) {
    Text lines = stamp + "\n0\n";
    for (int number = 0; number < UpdateLines / 2; ++number) {
        lines += "-\t" + tb::ListedSite(number * (count / UpdateLines * 2)) + "\t2\t11/01/2026\n";
        lines += "+\t" + tb::ListedSite(count + number) + "\t2\t11/21/2026\n";
    }
    return tb::EncryptStringChk(lines);
}

// The whole list, in the order of its numbers.
Text WholeReply(const Text& stamp, int count) {
    Text lines = stamp + "\n1\n";
    for (int number = 0; number < count; ++number) lines += "+\t" + tb::ListedSite(number) + "\t2\t11/21/2026\n";
    return tb::EncryptStringChk(lines);
}

// Each time on the list as it was loaded.
template <typename SavingTo>
void Update(benchmark::State& state, int count, bool guarded, bool whole) {
    Snapshot snapshot(count);
    SavingTo files;
    tb::SystemClock clock;
    const Text stamp = "202611210901";
    snapshot.Surroundings.Web.Replies["MalDB.aspx"] = whole ? WholeReply(stamp, count) : UpdateReply(stamp, count);
    tb::EvilDB list(files, snapshot.Surroundings, snapshot.Folder.Path(),
                    guarded ? std::make_unique<tb::UpdateGuard>(files, clock, snapshot.Folder.Path(), stamp) : nullptr);
    const std::int32_t expected = whole ? count : UpdateLines;
    std::int32_t lines = 0;
    list.EvilAdded.Connect([&](std::int32_t added, std::int32_t deleted) { lines = added + deleted; });
    for (auto _ : state) {
        state.PauseTiming();
        if (!list.LoadDB(snapshot.File(), 1) || list.LiveCount() != count) state.SkipWithError("not loaded");
        lines = 0;
        state.ResumeTiming();
        list.Update("key");
        if (lines != expected || list.LiveCount() != count) state.SkipWithError("not taken");
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const auto add = [](const char* what, int count, auto function) {
        tb::Register(what, std::to_string(count),
                     [=](benchmark::State& state, const Text&) { function(state, count); });
    };
    for (const int count : {tb::ListedSites, 10 * tb::ListedSites}) {
        add("read+crc32", count, &ReadAndCheck);
        add("load", count, &Load);
    }
    const auto addUpdate = [&](const char* what, auto update, bool guarded, bool whole) {
        add(what, tb::ListedSites, [=](benchmark::State& state, int count) { update(state, count, guarded, whole); });
    };
    addUpdate("update", &Update<NoDisk>, false, false);
    addUpdate("update on disk", &Update<tb::PosixFiles>, false, false);
    addUpdate("update, guarded", &Update<NoDisk>, true, false);
    addUpdate("anew", &Update<NoDisk>, false, true);
    addUpdate("anew, guarded", &Update<NoDisk>, true, true);
    tb::MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const auto ratio = [&](const char* what, const Text& of, const Text& to, const char* most) {
        std::printf("%-56s %7.2f  %s\n", what, reporter.Median(of) / reporter.Median(to), most);
    };
    std::printf("\n");
    ratio("load of 100,000 : read and crc32", "load/100000", "read+crc32/100000", "(at most 25)");
    ratio("load of 1,000,000 : read and crc32", "load/1000000", "read+crc32/1000000", "");
    ratio("load of 1,000,000 : load of 100,000", "load/1000000", "load/100000", "(at most 11)");
    ratio("update of 10,000 lines on 100,000 : load of 100,000", "update/100000", "load/100000", "(at most 0.5)");
    ratio("the same, written by the system", "update on disk/100000", "load/100000", "");
    ratio("update under a guard : without", "update, guarded/100000", "update/100000", "");
    ratio("the whole list anew under a guard : without", "anew, guarded/100000", "anew/100000", "");
}
