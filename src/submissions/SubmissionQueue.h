// The queue of submissions on the disk: the folder Data\InProcess with a file for each that waits for the service's
// answer, and in it the folder Error with those that were put aside. Nothing else knows where they are. A file is known
// by its name within the folder. All operations but ClearLeftovers raise what fails, as platform/Files.h tells.
// Format of the files: docs/formats/queue-file.md.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/Files.h"

namespace tb {

class SubmissionQueue {
public:
    // `files` outlives the object. Touches nothing on the disk.
    SubmissionQueue(Files& files, std::filesystem::path dataFolder);

    const std::filesystem::path& Folder() const { return m_Folder; }
    const std::filesystem::path& ErrorFolder() const { return m_ErrorFolder; }
    // Makes the two folders, where they are missing, in the data folder, which is there.
    void MakeFolders();

    // Every file in the folder counts, whatever its name. A folder that is not there has none.
    size_t Count() const { return m_Files.List(m_Folder).size(); }
    bool IsEmpty() const { return Count() == 0; }
    // In ascending order.
    std::vector<std::filesystem::path> List() const;
    bool Holds(const std::filesystem::path& name) const { return m_Files.Exists(m_Folder / name); }

    Text Read(const std::filesystem::path& name) const { return ReadWholeFile(m_Files, m_Folder / name); }
    // The file is there as a whole or, after a failure, not at all. One of that name is replaced.
    void Add(const std::filesystem::path& name, TextView content);
    void Delete(const std::filesystem::path& name) { m_Files.Delete(m_Folder / name); }
    // Moves a file that no further post can help, in the place of an older one of its name.
    void SetAside(const std::filesystem::path& name) { m_Files.Replace(m_Folder / name, m_ErrorFolder / name); }

    // Deletes what a program that ended in the middle of Add has left. What cannot be deleted stays: it takes room and
    // nothing else.
    void ClearLeftovers() noexcept;

private:
    Files& m_Files;
    std::filesystem::path m_DataFolder;
    std::filesystem::path m_Folder;
    std::filesystem::path m_ErrorFolder;
};

}  // namespace tb
