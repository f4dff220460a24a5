// The helper's class in the registry. The key by which the browser looks for its helpers is the program's own affair:
// the user decides about it.
#pragma once

#include <windows.h>

#include <filesystem>

namespace tb {

// Makes `library` the server of HelperCLSID: for all users or, without the right to that, for this one.
HRESULT RegisterHelper(const std::filesystem::path& library);

// Takes both away; success also when there was neither.
HRESULT UnregisterHelper();

}  // namespace tb
