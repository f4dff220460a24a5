// The list of submissions on the disk: its load, its save, and what adding one costs beside the save, for lists of
// several lengths. Adding must not grow with the list.
#include <benchmark/benchmark.h>

#include "bench/SubmissionList.h"
#include "fakes/TestFolder.h"
#include "platform/posix/PosixFiles.h"

namespace {

struct World {
    explicit World(const benchmark::State& state) : List(Disk, Folder.Path(), static_cast<int>(state.range(0))) {}
    tb::TestFolder Folder;
    tb::PosixFiles Disk;
    tb::SubmissionList List;
};

void Setup(benchmark::State& state) {
    World world(state);
    for (auto _ : state) {
        const auto db = world.List.MakeDB();
        db->Setup();
        if (db->Count() != state.range(0)) state.SkipWithError("the list did not come back");
    }
}

void Save(benchmark::State& state) {
    World world(state);
    for (auto _ : state) world.List.DB->Save(false);
}

// One submission in and out of the list, with the questions whether it is a repeat.
void Add(benchmark::State& state) {
    World world(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(world.List.DB->Exists("http://www.new.example"));
        benchmark::DoNotOptimize(world.List.DB->UniqueKeyExists("http://www.new.example"));
        world.List.Add(*world.List.DB);
        world.List.DB->Delete(1);
    }
}

BENCHMARK(Setup)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Save)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Add)->Arg(100)->Arg(10000);

}  // namespace

BENCHMARK_MAIN();
