// The machine and the system that the program runs on.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

// The system's version by its numbers; platform 2 is the NT family.
struct SystemVersion {
    std::int32_t Major = 0;
    std::int32_t Minor = 0;
    std::int32_t Build = 0;
    std::int32_t Platform = 0;
};

class Machine {
public:
    struct DiskSpace {
        std::int64_t FreeBytes = 0;
        std::int64_t TotalBytes = 0;
    };
    struct MemoryState {
        std::int64_t PhysicalAvailable = 0;
        std::int64_t PhysicalTotal = 0;
        std::int64_t PageFileAvailable = 0;
        std::int64_t PageFileTotal = 0;
        std::int64_t VirtualAvailable = 0;
        std::int64_t VirtualTotal = 0;
    };
    struct ScreenState {
        std::int32_t Width = 0;   // pixels
        std::int32_t Height = 0;  // pixels
        std::int32_t BitsPerPixel = 0;
        std::int32_t TwipsPerPixel = 15;
    };

    virtual ~Machine() = default;
    virtual SystemVersion Version() = 0;
    // The number of the code page that the system's narrow functions go by.
    virtual std::uint32_t AnsiCodePage() = 0;
    // Folders without a trailing backslash.
    virtual Text WindowsFolder() = 0;
    virtual Text SystemFolder() = 0;
    virtual Text TempFolder() = 0;
    virtual Text ComputerName() = 0;
    virtual Text UserName() = 0;
    // Of the disk that holds the system.
    virtual Text VolumeName() = 0;
    virtual DiskSpace Disk() = 0;
    virtual MemoryState Memory() = 0;
    virtual ScreenState Screen() = 0;
    // One of the system's metrics by its number, in pixels.
    virtual std::int32_t Metric(std::int32_t number) = 0;
    // The number of the last system error in this thread.
    virtual std::uint32_t LastErrorCode() = 0;
};

}  // namespace tb
