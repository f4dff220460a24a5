#include "platform/AtomicWrite.h"

#include "base/errors.h"

namespace tb {

void WriteFileAtomically(Files& files, const std::filesystem::path& target,
                         const std::function<void(FileWriter&)>& content) {
    // Replacing does not ask the attribute everywhere, so it is asked here.
    if (files.IsReadOnly(target)) throw Error(ErrorNumber::PermissionDenied);
    std::filesystem::path temporary = target;
    temporary += TemporarySuffix;
    try {
        {
            const std::unique_ptr<FileWriter> writer = files.OpenForWriting(temporary);
            content(*writer);
            writer->Finish();
        }
        files.Replace(temporary, target);
    } catch (...) {
        Trap([&] { files.Delete(temporary); }, [](const RuntimeError&) { /* the start clears leftovers */ });
        throw;
    }
}

}  // namespace tb
