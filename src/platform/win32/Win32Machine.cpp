#include "platform/win32/Win32Machine.h"

#include <windows.h>

#include <filesystem>

#include "platform/win32/Win32Text.h"

// Of ntdll; the system's headers for programs leave it out.
extern "C" LONG NTAPI RtlGetVersion(OSVERSIONINFOW* version);

namespace tb {

namespace {

constexpr int TwipsPerInch = 1440;

int Capability(int number) {
    const HDC screen = GetDC(nullptr);
    const int found = GetDeviceCaps(screen, number);
    ReleaseDC(nullptr, screen);
    return found;
}

// What `call(room, size)` writes; it gives the length, or 0 when it fails.
template <typename Call>
std::wstring Written(Call call) {
    wchar_t room[MAX_PATH + 1] = L"";
    const DWORD length = call(room, static_cast<DWORD>(MAX_PATH + 1));
    return length <= MAX_PATH ? std::wstring(room, length) : std::wstring();
}

// The same for calls that tell success and put the length into a variable.
template <typename Call>
Text Name(Call call) {
    return FromSystem(Written([&](wchar_t* room, DWORD size) { return call(room, &size) ? size : 0; }));
}

Text Folder(const std::wstring& folder) {
    const bool ends = !folder.empty() && folder.back() == L'\\';
    return FromSystem(ends ? folder.substr(0, folder.size() - 1) : folder);
}

// The root of the disk that holds the system, with its backslash.
std::wstring SystemDisk() {
    const std::wstring folder = Written([](wchar_t* room, DWORD size) { return GetWindowsDirectoryW(room, size); });
    return std::filesystem::path(folder).root_path().wstring();
}

}  // namespace

int DotsPerInch() { return Capability(LOGPIXELSX); }

std::uint32_t Win32Machine::AnsiCodePage() { return GetACP(); }

SystemVersion Win32Machine::Version() {
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    RtlGetVersion(&version);
    return {static_cast<std::int32_t>(version.dwMajorVersion), static_cast<std::int32_t>(version.dwMinorVersion),
            static_cast<std::int32_t>(version.dwBuildNumber), static_cast<std::int32_t>(version.dwPlatformId)};
}

Text Win32Machine::WindowsFolder() {
    return Folder(Written([](wchar_t* room, DWORD size) { return GetWindowsDirectoryW(room, size); }));
}

Text Win32Machine::SystemFolder() {
    return Folder(Written([](wchar_t* room, DWORD size) { return GetSystemDirectoryW(room, size); }));
}

Text Win32Machine::TempFolder() {
    return Folder(Written([](wchar_t* room, DWORD size) { return GetTempPathW(size, room); }));
}

Text Win32Machine::ComputerName() {
    return Name([](wchar_t* room, DWORD* size) { return GetComputerNameW(room, size); });
}

Text Win32Machine::UserName() {
    return Name([](wchar_t* room, DWORD* size) {
        const bool told = GetUserNameW(room, size) != FALSE;
        // This one counts the closing NUL.
        if (told && *size > 0) --*size;
        return told;
    });
}

Text Win32Machine::VolumeName() {
    wchar_t name[MAX_PATH + 1] = L"";
    GetVolumeInformationW(SystemDisk().c_str(), name, MAX_PATH + 1, nullptr, nullptr, nullptr, nullptr, 0);
    return FromSystem(name);
}

Machine::DiskSpace Win32Machine::Disk() {
    ULARGE_INTEGER free{};
    ULARGE_INTEGER total{};
    GetDiskFreeSpaceExW(SystemDisk().c_str(), &free, &total, nullptr);
    return {static_cast<std::int64_t>(free.QuadPart), static_cast<std::int64_t>(total.QuadPart)};
}

Machine::MemoryState Win32Machine::Memory() {
    MEMORYSTATUSEX state{};
    state.dwLength = sizeof state;
    GlobalMemoryStatusEx(&state);
    return {static_cast<std::int64_t>(state.ullAvailPhys),     static_cast<std::int64_t>(state.ullTotalPhys),
            static_cast<std::int64_t>(state.ullAvailPageFile), static_cast<std::int64_t>(state.ullTotalPageFile),
            static_cast<std::int64_t>(state.ullAvailVirtual),  static_cast<std::int64_t>(state.ullTotalVirtual)};
}

Machine::ScreenState Win32Machine::Screen() {
    ScreenState state{Metric(SM_CXSCREEN), Metric(SM_CYSCREEN), Capability(BITSPIXEL) * Capability(PLANES)};
    if (const int dots = DotsPerInch(); dots > 0) state.TwipsPerPixel = TwipsPerInch / dots;
    return state;
}

std::int32_t Win32Machine::Metric(std::int32_t number) { return GetSystemMetrics(number); }

std::uint32_t Win32Machine::LastErrorCode() { return static_cast<std::uint32_t>(GetLastError()); }

}  // namespace tb
