// Stands for the program that is updated: notes the size of its own file as a line of started.txt beside it, stays for
// as many milliseconds as its first argument tells, and ends.
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

int main(int argc, char** argv) {
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    const std::filesystem::path program = own;
    std::ofstream(program.parent_path() / "started.txt", std::ios::app | std::ios::binary)
        << std::filesystem::file_size(program) << '\n';
    if (argc > 1) Sleep(static_cast<DWORD>(std::atoi(argv[1])));
}
