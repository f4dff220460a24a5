// The plain texts of update replies: a stamp, a mode, a change a line.
#pragma once

#include <atomic>
#include <unordered_map>

#include "service/store/SiteHistory.h"

namespace tb {

// The recorded changes as text, so that what a client lacks is the end of it from some place on. Never changes.
struct ChangeText {
    // Of the present list, and those before it that the record reaches back to, newest first.
    std::vector<Publication> Publications;
    Text Lines;
    // Where the lines behind a publication begin, by its stamp.
    std::unordered_map<Text, size_t> Begins;

    const Publication& Latest() const { return Publications.front(); }
};
ChangeText ReadChangeText(Database& database);

// Brings a client from the stamp at `begin` of the lines to the latest one.
Text FramedChanges(const ChangeText& changes, size_t begin);
// Tells a client that what it holds is the latest.
Text FramedNothing(const Text& stamp);

// The whole list, for a client that must start anew.
struct WholeList {
    Text Stamp;
    Text Framed;
};
// Before the first publication the frame is empty: a client that was told to start anew would lose what it holds. Both
// are empty in the middle of the work once `stop` is set.
WholeList FramedWholeList(Database& database, const std::atomic<bool>& stop);

}  // namespace tb
