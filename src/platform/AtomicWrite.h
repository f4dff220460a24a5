// The one way to write a durable file.
#pragma once

#include <filesystem>
#include <functional>

#include "platform/Files.h"

namespace tb {

// What names of unfinished files end in.
inline constexpr TextView TemporarySuffix = ".tmp~";

// Writes what `content` writes into a temporary file beside `target` (its name and TemporarySuffix), flushes it to the
// disk and puts it in the place of `target`. Raises what fails, error 70 for a read-only target; `target` then has its
// old content, or still does not exist, and the temporary file is gone if it can be deleted.
void WriteFileAtomically(Files& files, const std::filesystem::path& target,
                         const std::function<void(FileWriter&)>& content);

// The same through a temporary file elsewhere on the same disk, for folders in which every file counts.
void WriteFileAtomically(Files& files, const std::filesystem::path& target, const std::filesystem::path& temporary,
                         const std::function<void(FileWriter&)>& content);

// Deletes what a killed write of `target` left beside it. What cannot be deleted stays; the next write takes its place.
void DropUnfinished(Files& files, const std::filesystem::path& target) noexcept;

}  // namespace tb
