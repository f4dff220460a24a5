// Trimming of blanks alone: in mails, posts and replies every other white space counts.
#pragma once

#include "base/text.h"

namespace tb {

// Without leading and trailing blanks; tabs and line ends stay.
inline TextView TrimBlanks(TextView text) {
    const size_t first = text.find_first_not_of(' ');
    return first == TextView::npos ? TextView() : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace tb
