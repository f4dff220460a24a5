// What a crash of this process leaves: one line in the log and a small dump below Log\, the newest three of which are
// kept. docs/operating.md tells how to read them.
#pragma once

#include <filesystem>

#include "platform/Files.h"

namespace tb {

struct CrashPlace {
    std::filesystem::path ProgramFolder;
    // Names the log.
    Text Product;
    // Names the dumps.
    Text Program;
    // Stands before the line's message, such as "tbUpdater: ".
    Text Speaker;
};

// From now on an exception that nobody handles, std::terminate and abort are written down before the process ends, with
// the exit status that it would have had and without a dialog or a debugger of the system. All threads are covered; a
// stack overflow of the calling one leaves room enough. The first fault of the program's own code (a bad address and
// the like) is written down even if a handler of the system swallows it, as it does around window procedures; the
// program then goes on. To be called once, early. What cannot be prepared or written is left out: without the folder
// Log\ there is neither, without the system's dbghelp.dll no dump.
void CatchCrashes(Files& files, const CrashPlace& place) noexcept;

}  // namespace tb
