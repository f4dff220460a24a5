// The update that waits to be installed, checked as a whole before anything is touched.
#pragma once

#include <cstdint>
#include <vector>

#include "base/errors.h"
#include "platform/Files.h"
#include "updater/Journal.h"
#include "updater/UpdateFolders.h"

namespace tb {

// What is wrong with an update for ever: another try brings nothing.
class UpdateDefect : public RuntimeError {
public:
    explicit UpdateDefect(Text what) : RuntimeError(0, std::move(what)) {}
};

struct PendingFile {
    Text Name;
    std::uint64_t Size = 0;
};

struct PendingUpdate {
    // As it stands in the manifest; decimal digits.
    Text Number;
    // All that the new version consists of, but for the updater, which the program has put in place. In the order of
    // the installation: the program is the last, with the library right before it that it cannot start without. Until
    // these two, what a killed installation leaves is the old program, which offers the update again; the two are one
    // step apart.
    std::vector<PendingFile> Files;
};

// The program asks nobody anything while this file is not there: its own, and the library that it is linked with.
bool IsNeededToStart(const Text& name, const Text& program);

// UpdateDefect for a manifest that is none, and for a name that is not plain or stands there twice. Raises what reading
// the file raises.
PendingUpdate ReadPendingUpdate(Files& files, const UpdateFolders& folders, const Text& program);

// The files of `update` that are to be installed: those that are staged. The program fetches no file that it takes for
// current, so any other only has to be installed, in whatever size; but one of the journal, which a broken
// run may have replaced and then deleted where it was staged, in the size told. UpdateDefect for a file that is neither
// staged nor installed, and for one of these two kinds in another size.
std::vector<PendingFile> StagedFiles(Files& files, const UpdateFolders& folders, const PendingUpdate& update,
                                     const Journal& journal);

}  // namespace tb
