#include "platform/BadFile.h"

#include "base/errors.h"
#include "platform/AtomicWrite.h"

namespace tb {

std::filesystem::path BadFile(std::filesystem::path path) { return path += BadSuffix; }

bool IsThere(Files& files, const std::filesystem::path& path) {
    try {
        files.OpenForReading(path);
        return true;
    } catch (const RuntimeError& error) {
        if (error.Number != static_cast<std::int32_t>(ErrorNumber::FileNotFound)) throw;
        return false;
    }
}

void KeepBadFile(Files& files, const std::filesystem::path& path) {
    if (!IsThere(files, path)) return;
    const Text content = ReadWholeFile(files, path);
    WriteFileAtomically(files, BadFile(path), [&](FileWriter& writer) { writer.Write(content); });
}

}  // namespace tb
