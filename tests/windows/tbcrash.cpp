// Crashes a running program from outside, so that the program needs no way to do it:
//   tbcrash PROGRAM.exe OFFSET [ARGUMENT]   runs a thread at that distance from the program's start, both hexadecimal
//   tbcrash PROGRAM.exe overflow            lets its first thread run out of stack
//   tbcrash PROGRAM.exe window OFFSET       makes that place the procedure of the tray's window, and posts it a message
#include <windows.h>

// After windows.h.
#include <tlhelp32.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Handle.h"

namespace {

// The first entry of a system's list that `fits` accepts; all zero when there is none.
template <typename Entry, typename Fits>
Entry Find(DWORD kind, DWORD process, BOOL(WINAPI* first)(HANDLE, Entry*), BOOL(WINAPI* next)(HANDLE, Entry*),
           Fits fits) {
    const tb::OwnedFile list(CreateToolhelp32Snapshot(kind, process));
    Entry entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = first(list.Get(), &entry); more != FALSE; more = next(list.Get(), &entry)) {
        if (fits(entry)) return entry;
    }
    return {};
}

bool RunThread(HANDLE program, std::uint64_t start, std::uint64_t argument) {
    const tb::OwnedObject thread(CreateRemoteThread(program, nullptr, 0,
                                                    reinterpret_cast<LPTHREAD_START_ROUTINE>(start),
                                                    reinterpret_cast<void*>(argument), 0, nullptr));
    return static_cast<bool>(thread);
}

using Code = std::vector<unsigned char>;

// The code's place in the program, null when it does not get there.
void* Plant(HANDLE program, const Code& code) {
    void* const place = VirtualAllocEx(program, nullptr, code.size(), MEM_COMMIT, PAGE_EXECUTE_READWRITE);
    const bool done =
        place != nullptr && WriteProcessMemory(program, place, code.data(), code.size(), nullptr) != FALSE;
    return done ? place : nullptr;
}

// A call of itself, into which the thread is sent when it takes its next message.
bool Overflow(HANDLE program, DWORD threadId) {
    void* const place = Plant(program, {0xE8, 0xFB, 0xFF, 0xFF, 0xFF});
    const tb::OwnedObject thread(OpenThread(THREAD_ALL_ACCESS, FALSE, threadId));
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    if (place == nullptr || SuspendThread(thread.Get()) == DWORD(-1) ||
        GetThreadContext(thread.Get(), &context) == FALSE) {
        return false;
    }
    context.Rip = reinterpret_cast<DWORD64>(place);
    return SetThreadContext(thread.Get(), &context) != FALSE && ResumeThread(thread.Get()) != DWORD(-1) &&
           PostThreadMessageA(threadId, WM_NULL, 0, 0) != FALSE;
}

// SetWindowLongPtr of the window's own process: only that may change the procedure. The system's libraries lie at one
// place in all processes.
bool ChangeProcedure(HANDLE program, std::uint64_t procedure) {
    const HWND window = FindWindowA(tb::NormalClasses.Window, tb::ChannelCaption);
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
    void* const place = Plant(program, code);
    if (window == nullptr || place == nullptr) return false;
    const tb::OwnedObject thread(
        CreateRemoteThread(program, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(place), nullptr, 0, nullptr));
    return WaitForSingleObject(thread.Get(), INFINITE) == WAIT_OBJECT_0 && PostMessageA(window, WM_NULL, 0, 0) != FALSE;
}

bool Crash(const char* name, const char* how, const char* argument) {
    const auto program = Find<PROCESSENTRY32>(TH32CS_SNAPPROCESS, 0, Process32First, Process32Next,
                                              [&](const auto& one) { return _stricmp(one.szExeFile, name) == 0; });
    const DWORD id = program.th32ProcessID;
    const tb::OwnedObject process(OpenProcess(PROCESS_ALL_ACCESS, FALSE, id));
    if (!process) return false;
    if (std::strcmp(how, "overflow") == 0) {
        const auto thread = Find<THREADENTRY32>(TH32CS_SNAPTHREAD, 0, Thread32First, Thread32Next,
                                                [&](const auto& one) { return one.th32OwnerProcessID == id; });
        return Overflow(process.Get(), thread.th32ThreadID);
    }
    const auto module = Find<MODULEENTRY32>(TH32CS_SNAPMODULE, id, Module32First, Module32Next,
                                            [&](const auto& one) { return _stricmp(one.szModule, name) == 0; });
    const auto base = reinterpret_cast<std::uint64_t>(module.modBaseAddr);
    const std::uint64_t number = std::strtoull(argument, nullptr, 16);
    if (base == 0) return false;
    if (std::strcmp(how, "window") == 0) return ChangeProcedure(process.Get(), base + number);
    return RunThread(process.Get(), base + std::strtoull(how, nullptr, 16), number);
}

}  // namespace

int main(int count, char** words) {
    if (count >= 3 && Crash(words[1], words[2], count > 3 ? words[3] : "0")) return 0;
    std::fprintf(stderr, "tbcrash: failed (%lu)\n", GetLastError());
    return 1;
}
