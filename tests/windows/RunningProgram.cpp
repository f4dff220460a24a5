#include "windows/RunningProgram.h"

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Files.h"
#include "sitedb/EvilDB.h"

namespace tb {

namespace {

constexpr DWORD StartMs = 30000;
constexpr DWORD EndMs = 10000;
constexpr const char* ProgramName = "Trawlbeam.exe";
constexpr const char* LogName = "stderr.txt";
constexpr const char* ReadyLine = "Trawlbeam ready: 2 entries\n";
// "mm/dd/yyyy hh:mm:ss" and three blanks.
constexpr size_t LogPrefix = 22;

// Programs of a build lie in one folder.
std::filesystem::path BuiltProgram() {
    wchar_t name[MAX_PATH];
    GetModuleFileNameW(nullptr, name, MAX_PATH);
    return std::filesystem::path(name).parent_path() / ProgramName;
}

struct NoReferenceData : EvilDBHost {
    Text CategoryName(const Text&) override { return {}; }
    bool IsDebugMode() override { return false; }
};

OwnedObject OnlyOne() {
    OwnedObject mutex(CreateMutexA(nullptr, FALSE, "Trawlbeam tests: the one running program"));
    WaitForSingleObject(mutex.Get(), INFINITE);
    return mutex;
}

}  // namespace

RunningProgram::RunningProgram() : m_OnlyOne(OnlyOne()) {
    if (Top() != nullptr) throw RuntimeError(1, "a program of this name is running already");
    std::filesystem::copy_file(BuiltProgram(), m_Folder.Path() / ProgramName);
    WriteSnapshot();
    StartProcess();
    WaitUntilReady();
}

RunningProgram::~RunningProgram() {
    TerminateProcess(m_Process.Get(), 99);
    WaitForSingleObject(m_Process.Get(), EndMs);
    ReleaseMutex(m_OnlyOne.Get());
}

void RunningProgram::WriteSnapshot() const {
    std::filesystem::create_directory(m_Folder.Path() / "Data");
    Win32Files files;
    NoReferenceData host;
    EvilDB list(files, host, m_Folder.Path() / "Data");
    for (const char* url : Listed) list.AddToDB(url, "2", "11/21/2026");
    if (!list.SaveDB("202611210900", list.Fingerprint())) throw RuntimeError(1, "no snapshot");
}

void RunningProgram::StartProcess() {
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    const OwnedFile log(CreateFileW((m_Folder.Path() / LogName).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inheritable,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdError = log.Get();
    PROCESS_INFORMATION made{};
    const std::filesystem::path program = m_Folder.Path() / ProgramName;
    if (!CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, TRUE, 0, nullptr, m_Folder.Path().c_str(), &start,
                        &made)) {
        throw SystemError("CreateProcess", GetLastError());
    }
    m_Process = OwnedObject(made.hProcess);
    m_ProcessId = made.dwProcessId;
    CloseHandle(made.hThread);
}

void RunningProgram::WaitUntilReady() {
    const ULONGLONG deadline = GetTickCount64() + StartMs;
    while (!WholeLog().ends_with(ReadyLine)) {
        if (WaitForSingleObject(m_Process.Get(), 10) == WAIT_OBJECT_0 || GetTickCount64() > deadline) {
            throw RuntimeError(1, "the program does not come up: " + WholeLog());
        }
    }
    m_ReadyAt = WholeLog().size();
}

HWND RunningProgram::Top() { return ToHwnd(m_Windows.FindTopLevel(NormalClasses.Window, ChannelCaption)); }

WindowHandle RunningProgram::Box() { return m_Windows.FindChild(ToWindowHandle(Top()), NormalClasses.TextBox); }

DWORD RunningProgram::WaitForEnd() const {
    WaitForSingleObject(m_Process.Get(), EndMs);
    DWORD status = STILL_ACTIVE;
    GetExitCodeProcess(m_Process.Get(), &status);
    return status;
}

Text RunningProgram::WholeLog() const {
    const OwnedFile file(CreateFileW((m_Folder.Path() / LogName).c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    Text whole(GetFileSize(file.Get(), nullptr), '\0');
    DWORD read = 0;
    ReadFile(file.Get(), whole.data(), static_cast<DWORD>(whole.size()), &read, nullptr);
    Text lines;
    for (const TextView line : SplitViews(whole, '\n')) {
        if (line.size() > LogPrefix) lines += Text(Trim(line.substr(LogPrefix))) + "\n";
    }
    return lines;
}

}  // namespace tb
