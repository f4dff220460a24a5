#include "platform/win32/CrashHandler.h"

#include <windows.h>

// After windows.h.
#include <dbghelp.h>
#include <psapi.h>

#include <csignal>
#include <cstdlib>
#include <exception>

#include "base/codepage.h"
#include "base/errors.h"
#include "platform/CrashRecord.h"

namespace tb {

namespace {

using PathBuffer = FixedText<wchar_t, 1024>;
using MiniDumpWriteDumpFunction = decltype(&MiniDumpWriteDump);

// What abort ends a process with.
constexpr DWORD AbortStatus = 3;
// The compiler's runtime throws C++ exceptions under codes of this kind.
constexpr DWORD ThrownMask = 0x20FFFFFF;
constexpr DWORD ThrownCode = 0x20474343;
// Room for the filter after a stack overflow.
constexpr ULONG KeptStack = 0x10000;
constexpr DWORD DumpMs = 60000;
constexpr DWORD TellerMs = 20;
constexpr size_t WriterStack = 0x40000;

// All that a broken process needs, prepared while it was whole. The system calls its filter with the exception and
// nothing else, so this is the one place of the program where an object of the process stands by itself.
struct Prepared {
    PathBuffer LogName;
    PathBuffer DumpName;
    PathBuffer Oldest;
    FixedText<char, 40> Speaker;
    // A thread of its own writes: the crashed one may have no stack left, and is stopped while it is looked at.
    DWORD Writer = 0;
    // The thread that prepared this, with whose end the process ends.
    HANDLE Main = nullptr;
    HANDLE Asked = nullptr;
    HANDLE Done = nullptr;

    // The thread that is being told of, one at a time.
    LONG volatile Teller = 0;
    MINIDUMP_EXCEPTION_INFORMATION Exception{};
    // Where the first fault was that a handler of the system may yet swallow.
    LONG volatile HasNoticed = 0;
    const void* Noticed = nullptr;
    // Of the program's modules, as the system names it for mapped files.
    std::array<wchar_t, 1024> Folder{};
    size_t FolderSize = 0;
};
Prepared prepared;

CivilDate LocalTime() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

// The file that the address was mapped from, in `room`, and where it starts; empty for memory of no module. Without the
// loader's lock, which may be held by whoever has crashed.
std::wstring_view ModuleAt(const void* address, std::array<wchar_t, 1024>& room, const void*& start) {
    MEMORY_BASIC_INFORMATION memory{};
    if (VirtualQuery(address, &memory, sizeof memory) == 0 || memory.Type != MEM_IMAGE) return {};
    start = memory.AllocationBase;
    return {room.data(), K32GetMappedFileNameW(GetCurrentProcess(), memory.AllocationBase, room.data(),
                                               static_cast<DWORD>(room.size()))};
}

size_t FolderSize(std::wstring_view path) { return path.find_last_of(L"\\/") + 1; }

void WriteLine(DWORD code, const void* address, const CivilDate& when) {
    std::array<wchar_t, 1024> room;
    const void* start = nullptr;
    std::wstring_view module = ModuleAt(address, room, start);
    module.remove_prefix(FolderSize(module));
    const auto offset =
        reinterpret_cast<std::uint64_t>(address) - (module.empty() ? 0 : reinterpret_cast<std::uint64_t>(start));
    PathBuffer name = prepared.LogName;
    AddMonth(name, when);
    const HANDLE log = CreateFileW(name.Add(".log").Get(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   nullptr, OPEN_ALWAYS, 0, nullptr);
    if (log == INVALID_HANDLE_VALUE) return;
    const CrashText line = CrashLine({code, module, offset, when}, prepared.Speaker.Get());
    DWORD written = 0;
    WriteFile(log, line.Get(), static_cast<DWORD>(line.Size()), &written, nullptr);
    CloseHandle(log);
}

void WriteDump(MiniDumpWriteDumpFunction write, const CivilDate& when) {
    PathBuffer name = prepared.DumpName;
    AddMoment(name, when);
    const HANDLE dump =
        CreateFileW(name.Add(DumpExtension).Get(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (dump == INVALID_HANDLE_VALUE) return;
    const bool written = write(GetCurrentProcess(), GetCurrentProcessId(), dump, MiniDumpNormal, &prepared.Exception,
                               nullptr, nullptr) != FALSE;
    CloseHandle(dump);
    if (!written) {
        DeleteFileW(name.Get());
    } else if (prepared.Oldest.Size() != 0) {
        DeleteFileW(prepared.Oldest.Get());
    }
}

// The library is loaded in time: who has crashed may hold what loading needs.
MiniDumpWriteDumpFunction LoadDumpFunction() {
    PathBuffer name;
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT size = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    if (size == 0 || size > folder.size()) return nullptr;
    // Of the system's folder only: the program's is the user's to write to.
    name.Add(std::wstring_view(folder.data(), size)).Add("\\dbghelp.dll");
    const HMODULE library = LoadLibraryW(name.Get());
    if (library == nullptr) return nullptr;
    return reinterpret_cast<MiniDumpWriteDumpFunction>(
        reinterpret_cast<void*>(GetProcAddress(library, "MiniDumpWriteDump")));
}

void WriteException(MiniDumpWriteDumpFunction write) {
    const EXCEPTION_RECORD& exception = *prepared.Exception.ExceptionPointers->ExceptionRecord;
    const CivilDate when = LocalTime();
    WriteLine(exception.ExceptionCode, exception.ExceptionAddress, when);
    if (write != nullptr) WriteDump(write, when);
}

DWORD WINAPI ServeCrashes(void* /*unused*/) {
    const MiniDumpWriteDumpFunction write = LoadDumpFunction();
    const HANDLE ends[] = {prepared.Asked, prepared.Main};
    while (WaitForMultipleObjects(2, ends, FALSE, INFINITE) == WAIT_OBJECT_0) {
        WriteException(write);
        SetEvent(prepared.Done);
    }
    // Wine ends a thread that has no stack left, and no more.
    TerminateProcess(GetCurrentProcess(), STATUS_STACK_OVERFLOW);
    return 0;
}

// Of what fails while it is told of nothing is told.
void Tell(EXCEPTION_POINTERS* exception) {
    const DWORD self = GetCurrentThreadId();
    if (self == prepared.Writer) return;
    while (const LONG teller = InterlockedCompareExchange(&prepared.Teller, static_cast<LONG>(self), 0)) {
        if (static_cast<DWORD>(teller) == self) return;
        Sleep(TellerMs);
    }
    prepared.Exception = {self, exception, FALSE};
    if (prepared.Writer != 0) {
        SetEvent(prepared.Asked);
        WaitForSingleObject(prepared.Done, DumpMs);
    } else {
        WriteException(nullptr);
    }
    InterlockedExchange(&prepared.Teller, 0);
}

[[noreturn]] void EndCrashed(EXCEPTION_POINTERS* exception, DWORD status) {
    if (prepared.Noticed != exception->ExceptionRecord->ExceptionAddress) Tell(exception);
    TerminateProcess(GetCurrentProcess(), status);
    for (;;) Sleep(INFINITE);
}

bool IsFault(DWORD code) {
    return code == EXCEPTION_ACCESS_VIOLATION || code == EXCEPTION_IN_PAGE_ERROR ||
           code == EXCEPTION_ILLEGAL_INSTRUCTION || code == EXCEPTION_PRIV_INSTRUCTION ||
           code == EXCEPTION_INT_DIVIDE_BY_ZERO;
}

// The system's modules meet faults that they handle; ours handle none.
bool IsOurs(const void* address) {
    std::array<wchar_t, 1024> room;
    const void* start = nullptr;
    const std::wstring_view module = ModuleAt(address, room, start);
    return module.empty() ||
           module.substr(0, FolderSize(module)) == std::wstring_view(prepared.Folder.data(), prepared.FolderSize);
}

// The system calls window procedures inside a handler of its own, which swallows what they meet. So the first fault of
// our code is told of before any handler is asked, and left to them.
LONG CALLBACK NoticeException(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    // Without a stack there is no room to look at the place.
    const bool isOurs = record.ExceptionCode == EXCEPTION_STACK_OVERFLOW ||
                        (IsFault(record.ExceptionCode) && IsOurs(record.ExceptionAddress));
    if (isOurs && InterlockedExchange(&prepared.HasNoticed, 1) == 0) {
        prepared.Noticed = record.ExceptionAddress;
        Tell(exception);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

LONG WINAPI HandleException(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    const bool isThrown = (record.ExceptionCode & ThrownMask) == ThrownCode;
    // Back to the one who throws, who then calls std::terminate.
    if (isThrown && (record.ExceptionFlags & EXCEPTION_NONCONTINUABLE) == 0) return EXCEPTION_CONTINUE_EXECUTION;
    EndCrashed(exception, record.ExceptionCode);
}

[[noreturn]] void EndAborted() {
    CONTEXT context{};
    RtlCaptureContext(&context);
    EXCEPTION_RECORD record{};
    record.ExceptionCode = AbortCode;
    record.ExceptionAddress = reinterpret_cast<void*>(context.Rip);
    EXCEPTION_POINTERS pointers{&record, &context};
    EndCrashed(&pointers, AbortStatus);
}

void HandleAbort(int /*signal*/) { EndAborted(); }

}  // namespace

void CatchCrashes(Files& files, const CrashPlace& place) noexcept {
    Trap(
        [&] {
            const std::filesystem::path folder = place.ProgramFolder / "Log";
            const auto named = [&](const Text& name) { return (folder / TextPath(name)).wstring(); };
            prepared.LogName.Add(std::wstring_view(named(place.Product)));
            prepared.DumpName.Add(std::wstring_view(named(place.Program)));
            prepared.Oldest.Add(std::wstring_view(DropOldDumps(files, folder, place.Program).wstring()));
            prepared.Speaker.Add(TextView(place.Speaker));
        },
        [](const RuntimeError&) { /* the line or the dump then finds no place */ });
    prepared.Asked = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    prepared.Done = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const HANDLE self = GetCurrentProcess();
    DuplicateHandle(self, GetCurrentThread(), self, &prepared.Main, SYNCHRONIZE, FALSE, 0);
    if (prepared.Asked != nullptr && prepared.Done != nullptr && prepared.Main != nullptr) {
        CloseHandle(CreateThread(nullptr, WriterStack, ServeCrashes, nullptr, STACK_SIZE_PARAM_IS_A_RESERVATION,
                                 &prepared.Writer));
    }
    const void* start = nullptr;
    prepared.FolderSize = FolderSize(ModuleAt(reinterpret_cast<const void*>(&CatchCrashes), prepared.Folder, start));
    ULONG kept = KeptStack;
    SetThreadStackGuarantee(&kept);
    AddVectoredExceptionHandler(FALSE, NoticeException);
    SetUnhandledExceptionFilter(HandleException);
    std::set_terminate(EndAborted);
    // Components have a terminate of their own, which ends in the abort that all share. Its message box would wait for
    // somebody to close it.
    std::signal(SIGABRT, HandleAbort);
    _set_error_mode(_OUT_TO_STDERR);
}

}  // namespace tb
