// The records of the files that make up an installation.
#pragma once

#include "shell/helpers/App.h"

namespace tb {

// Enters the record of a file into App::Components. `path` is its folder, with a trailing backslash and any of the
// tokens "{AppDir}", "{WinDir}" and "{WinSysDir}"; empty for the program's folder. The attributes of a file that is
// there are cleared; one whose dates cannot be read gets no record. Error 91 without the list, 457 for a second record.
void AddComponent(App& app, const Text& path, const Text& fileName, bool required);

// Takes the record of a file of the program's folder anew, after it has been replaced; what is required stays so.
// Without a list or a record nothing happens.
void RefreshComponent(App& app, TextView fileName);

// The component `name` must be replaced by one of this version and date (local time): it is not in the program folder,
// or older by its version, or, without a version, by its date. Error 5 for a file that is there and has no record, 91
// before the records exist.
bool IsComponentOutOfDate(const App& app, const Text& name, const Text& version, const Date& date);

}  // namespace tb
