#include "shell/helpers/SystemInfo.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "shell/helpers/cRegistry.h"

namespace tb {

namespace {

constexpr std::int64_t MegaByte = 1048576;

Text WithBackslash(const Text& folder) { return folder.empty() || folder.back() == '\\' ? folder : folder + "\\"; }

std::int32_t VersionPart(TextView windowsVersion, size_t index) {
    const std::vector<TextView> parts = SplitViews(windowsVersion, '.');
    return ToInt32(At(parts, index));
}

}  // namespace

Text SystemInfo::WindowsDir() const { return WithBackslash(m_Machine.WindowsFolder()); }
Text SystemInfo::SystemDir() const { return WithBackslash(m_Machine.SystemFolder()); }
Text SystemInfo::TempDir() const { return WithBackslash(m_Machine.TempFolder()); }

std::int32_t SystemInfo::FreeMegaBytesOnDisk() const { return NarrowToInt32(m_Machine.Disk().FreeBytes / MegaByte); }
std::int32_t SystemInfo::TotalMegaBytesOnDisk() const { return NarrowToInt32(m_Machine.Disk().TotalBytes / MegaByte); }

std::int32_t SystemInfo::PercentMemoryFree() const {
    const Machine::MemoryState memory = m_Machine.Memory();
    if (memory.PhysicalTotal <= 0) return 0;
    return RoundToInt32(100.0 * static_cast<double>(memory.PhysicalAvailable) /
                        static_cast<double>(memory.PhysicalTotal));
}

std::int64_t SystemInfo::MaxScreenColors() const { return std::int64_t{1} << m_Machine.Screen().BitsPerPixel; }

Text SystemInfo::ScreenResolution() const {
    return std::to_string(ScreenPixelWidth()) + "x" + std::to_string(ScreenPixelHeight());
}

Text SystemInfo::GetWindowsVersion() const {
    const SystemVersion version = m_Machine.Version();
    return std::to_string(version.Major) + "." + std::to_string(version.Minor) + "." + std::to_string(version.Build) +
           "." + std::to_string(version.Platform);
}

bool IsWindowsNT(TextView windowsVersion) { return VersionPart(windowsVersion, 3) == 2; }
bool IsWindows2000OrLater(TextView windowsVersion) { return VersionPart(windowsVersion, 0) >= 5; }

bool IsWindowsNT(const App& app) { return IsWindowsNT(SystemInfo(app.System.Machine).GetWindowsVersion()); }

bool IsWindows2000OrLater(const App& app) {
    return IsWindows2000OrLater(SystemInfo(app.System.Machine).GetWindowsVersion());
}

Text GetBrowserVersion(const App& app) {
    return cRegistry(app.System.Registry)
        .ValueEx(RegistryRoot::LocalMachine, "Software\\Microsoft\\Internet Explorer", "Version", "");
}

}  // namespace tb
