// What the updater is asked to do, told by its command line.
#pragma once

#include <optional>

#include "base/text.h"

namespace tb {

struct UpdaterCommand {
    // File name of the program that is updated and started again; it lies beside the updater.
    Text Program;
    // What its windows are named by.
    Text Product;
};

// The last two words of the line: it is not quoted and begins with a path that may hold blanks. A line without words
// behind the updater's own name, which is its last word then, comes from a person and gives `byHand`. Nothing for words
// that are no plain file names, and for a program that is no .exe or the updater itself.
std::optional<UpdaterCommand> ReadUpdaterCommand(TextView line, const UpdaterCommand& byHand);

}  // namespace tb
