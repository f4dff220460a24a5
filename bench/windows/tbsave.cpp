// tbsave COUNT: prints how long a save of a list of so many submissions takes here, in microseconds: the median of
// many.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "base/errors.h"
#include "base/numbers.h"
#include "bench/SubmissionList.h"
#include "platform/win32/Win32Files.h"
#include "windows/ScratchFolder.h"

namespace {

using Stopwatch = std::chrono::steady_clock;

constexpr size_t Saves = 101;

double MedianOfSaves(std::int32_t count) {
    const tb::ScratchFolder folder;
    tb::Win32Files disk;
    tb::SubmissionList list(disk, folder.Path(), count);
    std::vector<double> times;
    while (times.size() < Saves) {
        const auto begun = Stopwatch::now();
        list.DB->Save(false);
        times.push_back(std::chrono::duration<double, std::micro>(Stopwatch::now() - begun).count());
    }
    std::sort(times.begin(), times.end());
    return times[Saves / 2];
}

}  // namespace

int main(int count, char** words) {
    int status = 0;
    tb::Trap(
        [&] {
            if (count != 2) throw std::runtime_error("usage: tbsave COUNT");
            std::printf("save_us=%.0f\n", MedianOfSaves(tb::ToInt32(words[1])));
        },
        [&](const tb::RuntimeError& error) {
            std::fprintf(stderr, "tbsave: %s\n", error.Line().c_str());
            status = 1;
        });
    return status;
}
