// The machine that Windows runs on.
#pragma once

#include "platform/Machine.h"

namespace tb {

// Dots of the screen; 96 where nobody has chosen larger texts.
int DotsPerInch();

// What the system does not tell is empty or 0.
class Win32Machine : public Machine {
public:
    // The true version, not the one that the system makes up for old programs.
    SystemVersion Version() override;
    std::uint32_t AnsiCodePage() override;
    Text WindowsFolder() override;
    Text SystemFolder() override;
    Text TempFolder() override;
    Text ComputerName() override;
    Text UserName() override;
    Text VolumeName() override;
    DiskSpace Disk() override;
    MemoryState Memory() override;
    ScreenState Screen() override;
    std::int32_t Metric(std::int32_t number) override;
    std::uint32_t LastErrorCode() override;
};

}  // namespace tb
