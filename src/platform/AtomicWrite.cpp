#include "platform/AtomicWrite.h"

#include "base/errors.h"

namespace tb {

void WriteFileAtomically(Files& files, const std::filesystem::path& target,
                         const std::function<void(FileWriter&)>& content) {
    std::filesystem::path temporary = target;
    temporary += TemporarySuffix;
    WriteFileAtomically(files, target, temporary, content);
}

void WriteFileAtomically(Files& files, const std::filesystem::path& target, const std::filesystem::path& temporary,
                         const std::function<void(FileWriter&)>& content) {
    // Replacing does not ask the attribute everywhere, so it is asked here.
    if (files.IsReadOnly(target)) throw Error(ErrorNumber::PermissionDenied);
    try {
        {
            const std::unique_ptr<FileWriter> writer = files.OpenForWriting(temporary);
            content(*writer);
            writer->Finish();
        }
        files.Replace(temporary, target);
    } catch (...) {
        Trap([&] { files.Delete(temporary); }, [](const RuntimeError&) { /* whoever loads the file drops it */ });
        throw;
    }
}

void DropUnfinished(Files& files, const std::filesystem::path& target) noexcept {
    Trap(
        [&] {
            std::filesystem::path temporary = target;
            temporary += TemporarySuffix;
            if (files.Exists(temporary)) files.Delete(temporary);
        },
        [](const RuntimeError&) { /* it takes room and nothing else */ });
}

}  // namespace tb
