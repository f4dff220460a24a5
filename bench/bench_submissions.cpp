// The list of submissions on the disk: its load, its save, and what adding one costs beside the save, for lists of
// several lengths. Adding must not grow with the list.
#include <benchmark/benchmark.h>

#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/RecordedLog.h"
#include "fakes/TestFolder.h"
#include "platform/posix/PosixFiles.h"
#include "submissions/SubmissionDB.h"

namespace {

using tb::Text;

struct NoFormats : tb::ClipboardFormats {
    tb::ClipboardFormat Register(const Text&) override { return 0; }
};

struct NoDialog : tb::QualifiersView {
    tb::WindowExtent Extent(const tb::QualifiersDialog&) override { return {}; }
    void ShowModal(tb::QualifiersDialog&, const tb::WindowPosition&) override {}
};

struct Here : tb::FakeProcesses {
    explicit Here(std::filesystem::path folder) : Folder(std::move(folder)) {}
    std::filesystem::path Executable() override { return Folder / "Trawlbeam.exe"; }
    std::filesystem::path Folder;
};

struct World {
    explicit World(int count) {
        std::filesystem::create_directories(Folder.Path() / "Data" / "InProcess");
        DB = MakeDB();
        DB->Setup();
        for (int index = 0; index < count; ++index) Add(*DB);
        DB->Save(false);
    }
    std::shared_ptr<tb::SubmissionDB> MakeDB() {
        return std::make_shared<tb::SubmissionDB>(
            tb::SubmissionDB::Parts{{Program, Log, Web.Factory()}, Formats, Dialog});
    }
    void Add(tb::SubmissionDB& db) {
        const Text number = std::to_string(Added++);
        db.Add("URL", "http://www.evil" + number + ".example/login", "1-" + std::to_string(Added % 32000), 1,
               System.Clock.Now(), "http://www.evil" + number + ".example/login");
        System.Random.Value = Added % 9973 / 10000.0;
    }

    tb::TestFolder Folder;
    tb::PosixFiles Disk;
    tb::FakeSystem System;
    Here Process{Folder.Path()};
    tb::App Program{
        tb::Platform{System.Clock, System.Random, System.Pump, Disk, System.Dialogs, System.Resources, Process,
                     System.Shell, System.Versions, System.Registry, System.Machine, System.WindowText},
        tb::TestDeployment()};
    tb::RecordedLog Log;
    tb::FakeWeb Web;
    NoFormats Formats;
    NoDialog Dialog;
    std::shared_ptr<tb::SubmissionDB> DB;
    int Added = 0;
};

void Setup(benchmark::State& state) {
    World world(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const auto db = world.MakeDB();
        db->Setup();
        if (db->Count() != state.range(0)) state.SkipWithError("the list did not come back");
    }
}

void Save(benchmark::State& state) {
    World world(static_cast<int>(state.range(0)));
    for (auto _ : state) world.DB->Save(false);
}

// One submission in and out of the list, with the questions whether it is a repeat.
void Add(benchmark::State& state) {
    World world(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(world.DB->Exists("http://www.new.example"));
        benchmark::DoNotOptimize(world.DB->UniqueKeyExists("http://www.new.example"));
        world.Add(*world.DB);
        world.DB->Delete(1);
    }
}

BENCHMARK(Setup)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Save)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Add)->Arg(100)->Arg(10000);

}  // namespace

BENCHMARK_MAIN();
