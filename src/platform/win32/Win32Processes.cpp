#include "platform/win32/Win32Processes.h"

#include <windows.h>

// After windows.h.
#include <tlhelp32.h>

#include "platform/win32/Handle.h"
#include "platform/win32/Module.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

// The longest path that the system has.
constexpr size_t LongestPath = 32768;

// The file that a process runs, in the system's own form; empty when it does not tell.
std::wstring ImageOf(HANDLE process) {
    std::wstring name(LongestPath, L'\0');
    auto length = static_cast<DWORD>(name.size());
    if (!QueryFullProcessImageNameW(process, 0, name.data(), &length)) length = 0;
    name.resize(length);
    return name;
}

bool IsSameFile(const std::wstring& one, const std::wstring& other) {
    return CompareStringOrdinal(one.data(), static_cast<int>(one.size()), other.data(), static_cast<int>(other.size()),
                                TRUE) == CSTR_EQUAL;
}

bool IsInThisSession(DWORD processId) {
    DWORD session = 0;
    DWORD own = 0;
    return ProcessIdToSessionId(processId, &session) && ProcessIdToSessionId(GetCurrentProcessId(), &own) &&
           session == own;
}

bool Runs(DWORD processId, const std::wstring& image) {
    const OwnedObject process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, processId));
    // One that has ended stays listed for as long as somebody holds it.
    return process && IsSameFile(ImageOf(process.Get()), image) &&
           WaitForSingleObject(process.Get(), 0) == WAIT_TIMEOUT && IsInThisSession(processId);
}

bool IsRunByAnother(const std::wstring& image) {
    const OwnedFile listing(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!listing || image.empty()) return false;
    const std::wstring name = image.substr(image.rfind(L'\\') + 1);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(listing.Get(), &entry); more; more = Process32NextW(listing.Get(), &entry)) {
        // Most are of another name, and need not be opened.
        if (!IsSameFile(entry.szExeFile, name) || entry.th32ProcessID == GetCurrentProcessId()) continue;
        if (Runs(entry.th32ProcessID, image)) return true;
    }
    return false;
}

// Without `file` the command line's first word is looked for.
std::uint32_t StartFile(const wchar_t* file, const Text& commandLine) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION made{};
    std::wstring line = ToSystem(commandLine);
    if (!CreateProcessW(file, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &made)) return 0;
    const OwnedObject thread(made.hThread);
    const OwnedObject process(made.hProcess);
    return made.dwProcessId;
}

}  // namespace

std::filesystem::path Win32Processes::Executable() { return FileOf(nullptr); }

bool Win32Processes::IsPreviousInstance() { return IsRunByAnother(ImageOf(GetCurrentProcess())); }

bool Win32Processes::IsRunningBeside(const Text& fileName) {
    std::wstring image = ImageOf(GetCurrentProcess());
    image.resize(image.rfind(L'\\') + 1);
    return !image.empty() && IsRunByAnother(image + ToSystem(fileName));
}

bool Win32Processes::IsModuleLoaded(const Text& fileName) {
    return GetModuleHandleW(ToSystem(fileName).c_str()) != nullptr;
}

std::uint32_t Win32Processes::Start(const Text& commandLine) { return StartFile(nullptr, commandLine); }

std::uint32_t Win32Processes::StartProgram(const std::filesystem::path& program, const Text& commandLine) {
    return StartFile(program.c_str(), commandLine);
}

std::uint32_t Win32Processes::SetWorkingSetSize(std::int64_t minimum, std::int64_t maximum) {
    const bool done = SetProcessWorkingSetSize(GetCurrentProcess(), static_cast<SIZE_T>(minimum),
                                               static_cast<SIZE_T>(maximum)) != FALSE;
    return done ? 0 : static_cast<std::uint32_t>(GetLastError());
}

Text Win32Processes::SystemErrorText(std::uint32_t number) {
    constexpr DWORD Flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    wchar_t text[255];
    return FromSystem({text, FormatMessageW(Flags, nullptr, number, 0, text, std::size(text), nullptr)});
}

void Win32Processes::Exit(std::int32_t status) { ExitProcess(static_cast<UINT>(status)); }

}  // namespace tb
