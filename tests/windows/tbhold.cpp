// Holds something for a script until it is killed:
//   tbhold FILE       a file, as a scanner does: others may read it; nobody may write, move or delete it
//   tbhold --program  the right to be the one program of its name, which the tests of the session share
// Prints "held" when it has it.
#include <cstdio>

#include "windows/OnlyProgram.h"

namespace {

[[noreturn]] void StayHeld() {
    std::puts("held");
    std::fflush(stdout);
    for (;;) Sleep(INFINITE);
}

}  // namespace

int main(int count, char** words) {
    if (count != 2) return 2;
    if (std::string(words[1]) == "--program") {
        tb::Trap(
            [] {
                const tb::OnlyProgram only;
                StayHeld();
            },
            [](const tb::RuntimeError& error) { std::fprintf(stderr, "tbhold: %s\n", error.what()); });
        return 1;
    }
    const tb::OwnedFile file(CreateFileA(words[1], GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    if (file) StayHeld();
    std::fprintf(stderr, "tbhold: error %lu\n", GetLastError());
    return 1;
}
