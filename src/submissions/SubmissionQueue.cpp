#include "submissions/SubmissionQueue.h"

#include <algorithm>

#include "base/errors.h"
#include "platform/AtomicWrite.h"

namespace tb {

SubmissionQueue::SubmissionQueue(Files& files, std::filesystem::path dataFolder)
    : m_Files(files),
      m_DataFolder(std::move(dataFolder)),
      m_Folder(m_DataFolder / "InProcess"),
      m_ErrorFolder(m_Folder / "Error") {}

void SubmissionQueue::MakeFolders() {
    for (const std::filesystem::path& folder : {m_Folder, m_ErrorFolder}) {
        if (!m_Files.FolderExists(folder)) m_Files.MakeFolder(folder);
    }
}

std::vector<std::filesystem::path> SubmissionQueue::List() const {
    std::vector<std::filesystem::path> names = m_Files.List(m_Folder);
    std::sort(names.begin(), names.end());
    return names;
}

void SubmissionQueue::Add(const std::filesystem::path& name, TextView content) {
    // What is in the queue's folder counts as a submission, so the unfinished file lies outside.
    std::filesystem::path temporary = m_DataFolder / name;
    temporary += TemporarySuffix;
    WriteFileAtomically(m_Files, m_Folder / name, temporary, [&](FileWriter& writer) { writer.Write(content); });
}

void SubmissionQueue::ClearLeftovers() noexcept {
    Trap(
        [&] {
            for (const std::filesystem::path& name : m_Files.List(m_DataFolder)) {
                const Text folded = UpperCase(name.string());
                for (const char* kind : {".E", ".U"}) {
                    if (folded.ends_with(kind + UpperCase(TemporarySuffix))) m_Files.Delete(m_DataFolder / name);
                }
            }
        },
        [](const RuntimeError&) { /* they take room and nothing else */ });
}

}  // namespace tb
