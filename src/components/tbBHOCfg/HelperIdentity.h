// By which names the program, the browser and the browser helper know each other. They never change.
#pragma once

namespace tb {

// The class that the browser makes. The program looks for it in the registry in this form.
inline constexpr const char* HelperCLSID = "{EA40C944-D8E3-42F3-B083-D8BE054B83D6}";

// In the program folder, where the helper looks for its configuration and the components beside itself.
inline constexpr const char* HelperFile = "TrawlbeamHelper.dll";
inline constexpr const char* HelperConfigurationFile = "TB.BIN";

}  // namespace tb
