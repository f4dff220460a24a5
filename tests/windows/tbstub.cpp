// Stands for the program that is updated: notes the size of its own file as a line of started.txt beside it, waits for
// the event that its first argument names, if there is one, and ends.
#include "platform/win32/Handle.h"
#include "windows/Eventually.h"

#include <filesystem>
#include <fstream>

int main(int argc, char** argv) {
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    const std::filesystem::path program = own;
    // Not while the test reads it.
    std::ofstream started;
    tb::Eventually([&] {
        started.open(program.parent_path() / "started.txt", std::ios::app | std::ios::binary);
        return started.is_open();
    });
    started << std::filesystem::file_size(program) << std::endl;
    if (argc > 1) {
        const tb::OwnedObject mayLeave(OpenEventA(SYNCHRONIZE, FALSE, argv[1]));
        WaitForSingleObject(mayLeave.Get(), tb::DeadlineMs);
    }
}
