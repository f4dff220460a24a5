// What files hold, through one buffer of bounded size.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "platform/Files.h"

namespace tb {

// Bytes of a file; nothing where there is no such file. Raises what opening it raises.
std::optional<std::uint64_t> FileSize(Files& files, const std::filesystem::path& path);

// Writes a copy with the same dates, and flushes it to the disk; a file in its place is overwritten. `moved` is told
// the bytes of each piece. Returns the bytes of the whole. What fails leaves half a copy behind.
std::uint64_t CopyContents(Files& files, const std::filesystem::path& from, const std::filesystem::path& to,
                           const std::function<void(size_t)>& moved);

// Both are there and hold the same. Raises what reading raises.
bool HaveSameContents(Files& files, const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace tb
