// Puts a staged update in the place of the installed files, all of it or nothing.
//
// First everything that can go wrong for want of room or rights is done aside: what will be replaced is copied into the
// backup, what will replace it beside that. Then the journal is written, and from there on nothing but renames changes
// the program's folder. A run that ends anywhere, by a kill too, is finished or undone by the next one: without a
// journal the folder is untouched, with one it can be put back, and the staged files stay until all is installed.
#pragma once

#include <cstdint>
#include <functional>
#include <set>

#include "base/log.h"
#include "platform/Pump.h"
#include "updater/Journal.h"
#include "updater/PendingUpdate.h"

namespace tb {

enum class UpdateOutcome {
    Nothing,    // no update is pending; the version is whole
    Installed,  // the new version is whole
    Refused,    // the update has a defect and is gone; the old version is whole
    Failed,     // something that may pass was in the way; the old version is whole, the update still pending
    Halfway,    // the same, and the old version could not be put back; the next run goes on
};

struct UpdateResult {
    UpdateOutcome Outcome = UpdateOutcome::Nothing;
    // Of the last three: what was wrong, and with which file.
    Text Reason;
    // The file is in use, or there is no right to it.
    bool IsDenied = false;
};

class UpdateInstaller {
public:
    // `program` is the file name of the program. `progress` is told per cents, at each piece of a file: it may serve
    // messages, and must not throw. `pump` serves them while a file that is in use is waited for.
    UpdateInstaller(Files& files, LogSink& log, Pump& pump, std::filesystem::path programFolder, Text program,
                    std::function<void(int)> progress)
        : m_Files(files),
          m_Log(log),
          m_Pump(pump),
          m_Folders(std::move(programFolder)),
          m_Program(std::move(program)),
          m_Progress(std::move(progress)) {}

    // Once. The program must not run.
    UpdateResult Run() noexcept;

private:
    using Path = std::filesystem::path;

    void Log(const Text& line) { m_Log.WriteLog(line, LogLevel::Always); }
    UpdateOutcome Proceed();
    void ReadJournal();
    bool CoversJournal() const;
    // The first file of the pending update, or null, that is in the journal but not staged. It may have been staged
    // once, or the program took the new one for current: once the journal is undone, the update cannot be installed.
    const PendingFile* LostByUndo() const;
    void Install();
    void BackUp(const PendingFile& file);
    void Prepare(const PendingFile& file);
    void WriteJournal();
    void PutInPlace(const PendingFile& file);
    void Verify();
    void Finish();

    void Undo();
    void PutBack(const JournalEntry& entry);
    bool TryToUndo() noexcept;
    UpdateResult Refuse(const UpdateDefect& defect) noexcept;
    UpdateResult Fail(const RuntimeError& error) noexcept;

    bool IsInherited(const Text& name) const;
    // Takes the place of an installed file. A library that a browser has loaded can only be moved: it goes to the
    // backups of the update `number`, unless the program needs it to start, since it is missing then for a moment. What
    // is refused is tried again for some seconds: scanners hold a program that has just ended and files just written.
    void ReplaceInstalled(const Path& from, const Text& name, const Text& number);
    void ReplaceOrMove(const Path& from, const Text& name, const Text& number);
    void MoveAside(const Path& installed, const Text& name, const Text& number);
    // Takes the place of `to` whatever its attributes.
    void ReplaceFile(const Path& from, const Path& to);
    void DeleteFile(const Path& path);
    // What cannot be deleted stays.
    void TryToDelete(const Path& path) noexcept;
    void DropPrepared() noexcept;
    void DropCopied() noexcept;
    void DropStaged() noexcept;
    void DropOldBackups() noexcept;
    void Advance(size_t bytes);

    Files& m_Files;
    LogSink& m_Log;
    Pump& m_Pump;
    const UpdateFolders m_Folders;
    const Text m_Program;
    const std::function<void(int)> m_Progress;

    PendingUpdate m_Update;
    std::vector<PendingFile> m_Staged;
    Journal m_Journal;
    // It is, or may be, on the disk.
    bool m_HasJournal = false;
    // Its entries by an earlier run, which may have replaced these files or not.
    size_t m_Inherited = 0;
    // The entries to come, until all backups are there.
    std::vector<JournalEntry> m_Saved;
    // The backups that this run has made, the last of them in part perhaps.
    std::vector<Path> m_Copied;
    // Names of the files that this run has replaced.
    std::set<Text> m_Replaced;
    bool m_IsInstalled = false;
    // The undo had to remove the pending update.
    bool m_IsDropped = false;
    // The file at work, for messages.
    Text m_At;
    std::int64_t m_Done = 0;
    std::int64_t m_Total = 0;
};

}  // namespace tb
