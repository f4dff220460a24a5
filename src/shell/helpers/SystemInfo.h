// A read-only view of the machine, in the texts and numbers that the program shows and reports.
#pragma once

#include "shell/helpers/App.h"

namespace tb {

class SystemInfo {
public:
    // `machine` must outlive the view; every property is asked anew.
    explicit SystemInfo(Machine& machine) : m_Machine(machine) {}

    // Folders with a trailing backslash.
    Text WindowsDir() const;
    Text SystemDir() const;
    Text TempDir() const;
    // Of the disk that holds the system.
    std::int32_t FreeMegaBytesOnDisk() const;
    std::int32_t TotalMegaBytesOnDisk() const;
    Text ComputerName() const { return m_Machine.ComputerName(); }
    Text CurrentUser() const { return m_Machine.UserName(); }
    Text VolumeName() const { return m_Machine.VolumeName(); }
    // Memory in bytes.
    std::int64_t AvailablePhysicalMemory() const { return m_Machine.Memory().PhysicalAvailable; }
    std::int64_t TotalPhysicalMemory() const { return m_Machine.Memory().PhysicalTotal; }
    // Of the physical memory, rounded; 0 when there is none.
    std::int32_t PercentMemoryFree() const;
    std::int64_t AvailablePageFile() const { return m_Machine.Memory().PageFileAvailable; }
    std::int64_t PageFileSize() const { return m_Machine.Memory().PageFileTotal; }
    std::int64_t AvailableMemory() const { return m_Machine.Memory().VirtualAvailable; }
    std::int64_t TotalMemory() const { return m_Machine.Memory().VirtualTotal; }
    // Colours of the screen: 2 to the power of its bits per pixel, as a number that may exceed 32 bits.
    std::int64_t MaxScreenColors() const;
    std::int32_t ScreenPixelWidth() const { return m_Machine.Screen().Width; }
    std::int32_t ScreenPixelHeight() const { return m_Machine.Screen().Height; }
    // "width x height" without blanks: "1280x1024".
    Text ScreenResolution() const;
    std::uint32_t SystemErrorCode() const { return m_Machine.LastErrorCode(); }
    // "major.minor.build.platform", for example "6.1.7601.2".
    Text GetWindowsVersion() const;

private:
    Machine& m_Machine;
};

// What the version text tells: platform number 2, and a major version of 5 or more. Raises 13 for a text of another
// form.
bool IsWindowsNT(TextView windowsVersion);
bool IsWindows2000OrLater(TextView windowsVersion);
// The same of this machine.
bool IsWindowsNT(const App& app);
bool IsWindows2000OrLater(const App& app);

// Of the system's browser; empty when it is not known.
Text GetBrowserVersion(const App& app);

}  // namespace tb
