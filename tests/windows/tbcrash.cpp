// Crashes a running program from outside, so that the program needs no way to do it:
//   tbcrash PROGRAM.exe OFFSET [ARGUMENT]   runs a thread at that distance from the program's start, both hexadecimal
//   tbcrash PROGRAM.exe overflow            lets the thread of the tray's window run out of stack
//   tbcrash PROGRAM.exe window OFFSET       makes that place the procedure of the tray's window, and posts it a message
#include <windows.h>

// After windows.h.
#include <psapi.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Handle.h"

namespace {

// A thread of the program from now on.
tb::OwnedObject RunThread(HANDLE program, std::uint64_t start, std::uint64_t argument = 0) {
    return tb::OwnedObject(CreateRemoteThread(program, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(start),
                                              reinterpret_cast<void*>(argument), 0, nullptr));
}

using Code = std::vector<unsigned char>;

// The code's place in the program, 0 when it does not get there.
std::uint64_t Plant(HANDLE program, const Code& code) {
    void* const place = VirtualAllocEx(program, nullptr, code.size(), MEM_COMMIT, PAGE_EXECUTE_READWRITE);
    return WriteProcessMemory(program, place, code.data(), code.size(), nullptr)
               ? reinterpret_cast<std::uint64_t>(place)
               : 0;
}

// A call of itself, into which the thread is sent when it takes its next message.
bool Overflow(HANDLE program, HWND window) {
    const std::uint64_t place = Plant(program, {0xE8, 0xFB, 0xFF, 0xFF, 0xFF});
    const DWORD threadId = GetWindowThreadProcessId(window, nullptr);
    const tb::OwnedObject thread(OpenThread(THREAD_ALL_ACCESS, FALSE, threadId));
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    if (place == 0 || SuspendThread(thread.Get()) == DWORD(-1) || !GetThreadContext(thread.Get(), &context))
        return false;
    context.Rip = place;
    return SetThreadContext(thread.Get(), &context) && ResumeThread(thread.Get()) != DWORD(-1) &&
           PostThreadMessageA(threadId, WM_NULL, 0, 0);
}

// SetWindowLongPtr of the window's own process: only that may change the procedure. The system's libraries lie at one
// place in all processes.
bool ChangeProcedure(HANDLE program, HWND window, std::uint64_t procedure) {
    Code code;
    const auto add = [&](const Code& bytes) { code.insert(code.end(), bytes.begin(), bytes.end()); };
    const auto addNumber = [&](const Code& load, std::uint64_t value) {
        add(load);
        for (int byte = 0; byte < 8; ++byte) code.push_back(static_cast<unsigned char>(value >> (8 * byte)));
    };
    addNumber({0x48, 0xB9}, reinterpret_cast<std::uint64_t>(window));  // mov rcx
    add({0xBA, 0xFC, 0xFF, 0xFF, 0xFF});                               // mov edx, GWLP_WNDPROC
    addNumber({0x49, 0xB8}, procedure);                                // mov r8
    addNumber({0x48, 0xB8}, reinterpret_cast<std::uint64_t>(&SetWindowLongPtrA));
    add({0x48, 0x83, 0xEC, 0x28, 0xFF, 0xD0, 0x48, 0x83, 0xC4, 0x28, 0xC3});  // the call, with its room on the stack
    const std::uint64_t place = Plant(program, code);
    return place != 0 && WaitForSingleObject(RunThread(program, place).Get(), INFINITE) == WAIT_OBJECT_0 &&
           PostMessageA(window, WM_NULL, 0, 0);
}

bool Crash(const char* name, const char* how, const char* argument) {
    const HWND window = FindWindowA(tb::NormalClasses.Window, tb::ChannelCaption);
    const std::uint64_t number = std::strtoull(argument, nullptr, 16);
    DWORD ids[1024];
    DWORD size = 0;
    EnumProcesses(ids, sizeof ids, &size);
    for (DWORD index = 0; index < size / sizeof *ids; ++index) {
        const tb::OwnedObject process(OpenProcess(PROCESS_ALL_ACCESS, FALSE, ids[index]));
        // The first one is the program itself.
        HMODULE module = nullptr;
        DWORD modules = 0;
        char found[MAX_PATH] = "";
        EnumProcessModules(process.Get(), &module, sizeof module, &modules);
        GetModuleBaseNameA(process.Get(), module, found, MAX_PATH);
        const auto base = reinterpret_cast<std::uint64_t>(module);
        if (_stricmp(found, name) != 0) continue;
        if (std::strcmp(how, "overflow") == 0) return Overflow(process.Get(), window);
        if (std::strcmp(how, "window") == 0) return ChangeProcedure(process.Get(), window, base + number);
        return static_cast<bool>(RunThread(process.Get(), base + std::strtoull(how, nullptr, 16), number));
    }
    return false;
}

}  // namespace

int main(int count, char** words) {
    if (count >= 3 && Crash(words[1], words[2], count > 3 ? words[3] : "0")) return 0;
    std::fprintf(stderr, "tbcrash: failed (%lu)\n", GetLastError());
    return 1;
}
