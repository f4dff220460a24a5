// The defaults data: timers, server lists and other values that a publisher changes without a new program. They lie in
// Data\defaults.bin and become globals of the settings, by which all others read them.
#pragma once

#include "refdata/ServiceAccess.h"

namespace tb {

class Defaults {
public:
    static constexpr const char* FileName = "defaults.bin";

    explicit Defaults(ServiceAccess access) : m_Access(std::move(access)) {}

    // Loads the document `plain` for nobody. Raises what keeps it from being loaded, and that it names no server in
    // use: whoever loaded it would not be updated any more.
    static void Check(const App& app, const Text& plain);

    // Fetches the file from the built-in servers if they have a later one; True when it did.
    bool RetrieveDefaults() noexcept;

    // Reads the file: each group becomes the global of its NAME, in place of one that is there, and the document's
    // version the text DEFAULTVERSION. False, behind one line of level 0, when the file cannot be taken; the globals
    // are then as they were. `MinVersion`: see LoadDataFile.
    bool LoadDefaults(const Text& MinVersion) noexcept;

    // The step of the start: a missing file is fetched, and when that fails too the start goes on without defaults;
    // True, which stops the start, when there is a file that does not load. See DataGuard for the file before it.
    bool CheckLoadDefaults() noexcept;

private:
    bool Load(const Text& name, const Text& MinVersion) noexcept;

    ServiceAccess m_Access;
};

}  // namespace tb
