// One updater at a time works in a folder.
#pragma once

#include <filesystem>

#include "base/text.h"
#include "platform/win32/Handle.h"

namespace tb {

// The right to be the updater of the program in `folder` whose window has that caption; the empty handle while another
// process of the session has it. It is given back with the handle.
OwnedObject BecomeOnlyUpdater(const Text& caption, const std::filesystem::path& folder);

}  // namespace tb
