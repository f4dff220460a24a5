#include "updater/UpdateInstaller.h"

#include <algorithm>

#include "components/tbXML/XmlParser.h"
#include "updater/FileContents.h"

namespace tb {

namespace {

constexpr std::int64_t WholePercent = 100;

// Some five seconds for a file that is refused, most of them spent in the tries, which are not given up at once.
constexpr int Retries = 30;
constexpr std::int32_t RetryMs = 50;

bool IsDenial(const RuntimeError& error) {
    return error.Number == static_cast<std::int32_t>(ErrorNumber::PermissionDenied);
}

bool IsDamage(const RuntimeError& error) {
    return error.Number == XmlErrorNumber || error.Number == static_cast<std::int32_t>(ErrorNumber::TypeMismatch) ||
           error.Number == static_cast<std::int32_t>(ErrorNumber::Overflow);
}

}  // namespace

UpdateResult UpdateInstaller::Run() noexcept {
    try {
        return {Proceed(), {}};
    } catch (const UpdateDefect& defect) {
        return Refuse(defect);
    } catch (...) {
        return Fail(CurrentError());
    }
}

UpdateOutcome UpdateInstaller::Proceed() {
    ReadJournal();
    if (!m_Files.Exists(m_Folders.Manifest)) {
        // Somebody has dropped the update that was being installed.
        Undo();
        Log("No update is pending");
        return UpdateOutcome::Nothing;
    }
    m_At = Text(ManifestName);
    m_Update = ReadPendingUpdate(m_Files, m_Folders, m_Program);
    if (m_Journal.Undoing || !CoversJournal()) {
        if (const PendingFile* const lost = LostByUndo()) {
            throw UpdateDefect(lost->Name + " was not downloaded, and is put back to the old version");
        }
        Undo();
    }
    m_Staged = StagedFiles(m_Files, m_Folders, m_Update, m_Journal);
    Install();
    return UpdateOutcome::Installed;
}

void UpdateInstaller::ReadJournal() {
    m_At = m_Folders.Journal.filename().string();
    try {
        m_Journal = LoadJournal(m_Files, m_Folders.Journal);
        m_HasJournal = m_Files.Exists(m_Folders.Journal);
        m_Inherited = m_Journal.Entries.size();
        if (m_HasJournal) Log("An installation was broken off");
    } catch (const RuntimeError& error) {
        if (!IsDamage(error)) throw;
        // The old version cannot be told any more. Going on is the one way to a whole version.
        Path kept = m_Folders.Journal;
        kept += ".bad";
        ReplaceFile(m_Folders.Journal, kept);
        Log("The journal is damaged: " + error.Line());
    }
}

// This update decides over every file that a broken one may have left in either version.
bool UpdateInstaller::CoversJournal() const {
    const std::vector<PendingFile>& files = m_Update.Files;
    return std::all_of(m_Journal.Entries.begin(), m_Journal.Entries.end(), [&](const JournalEntry& entry) {
        return std::any_of(files.begin(), files.end(),
                           [&](const PendingFile& file) { return UpperCase(file.Name) == UpperCase(entry.Name); });
    });
}

const PendingFile* UpdateInstaller::LostByUndo() const {
    const std::vector<PendingFile>& files = m_Update.Files;
    const auto lost = std::find_if(files.begin(), files.end(), [this](const PendingFile& file) {
        return m_Journal.Find(file.Name) != nullptr && !m_Files.Exists(m_Folders.Staged(file.Name));
    });
    return lost == files.end() ? nullptr : &*lost;
}

void UpdateInstaller::Install() {
    Log("Installing update " + m_Update.Number + ", files: " + std::to_string(m_Staged.size()));
    m_Files.MakeFolder(m_Folders.Backup);
    m_Files.MakeFolder(m_Folders.BackupOf(m_Update.Number));
    for (const PendingFile& file : m_Staged) {
        m_Total += static_cast<std::int64_t>(file.Size);
        if (!IsInherited(file.Name)) {
            m_Total += static_cast<std::int64_t>(FileSize(m_Files, m_Folders.Installed(file.Name)).value_or(0));
        }
    }
    for (const PendingFile& file : m_Staged) BackUp(file);
    for (const PendingFile& file : m_Staged) Prepare(file);
    WriteJournal();
    for (const PendingFile& file : m_Staged) PutInPlace(file);
    Verify();
    m_IsInstalled = true;
    Finish();
}

void UpdateInstaller::BackUp(const PendingFile& file) {
    // What the program's folder holds of an inherited file may be the new one already.
    if (IsInherited(file.Name)) return;
    m_At = file.Name;
    JournalEntry entry{file.Name, m_Update.Number, m_Files.Exists(m_Folders.Installed(file.Name)), 0};
    if (entry.WasThere) {
        m_Copied.push_back(m_Folders.Saved(entry.Number, file.Name));
        entry.Size = CopyContents(m_Files, m_Folders.Installed(file.Name), m_Copied.back(),
                                  [this](size_t bytes) { Advance(bytes); });
    }
    m_Saved.push_back(std::move(entry));
}

void UpdateInstaller::Prepare(const PendingFile& file) {
    m_At = file.Name;
    const std::uint64_t size =
        CopyContents(m_Files, m_Folders.Staged(file.Name), m_Folders.Prepared(m_Update.Number, file.Name),
                     [this](size_t bytes) { Advance(bytes); });
    if (size != file.Size) throw UpdateDefect(file.Name + " changes while it is read");
}

void UpdateInstaller::WriteJournal() {
    if (m_Saved.empty()) return;
    m_At = m_Folders.Journal.filename().string();
    for (JournalEntry& entry : m_Saved) m_Journal.Entries.push_back(std::move(entry));
    m_HasJournal = true;
    SaveJournal(m_Files, m_Folders.Journal, m_Journal);
}

void UpdateInstaller::PutInPlace(const PendingFile& file) {
    m_At = file.Name;
    const Path prepared = m_Folders.Prepared(m_Update.Number, file.Name);
    const Path installed = m_Folders.Installed(file.Name);
    // One that is in place already may be in use by now.
    if (IsInherited(file.Name) && HaveSameContents(m_Files, prepared, installed)) {
        TryToDelete(prepared);
        return;
    }
    ReplaceInstalled(prepared, file.Name, m_Update.Number);
    m_Replaced.insert(UpperCase(file.Name));
    Log("Installed " + file.Name + " " + std::to_string(file.Size));
}

// Of what was replaced by this run or another; that is in the journal.
void UpdateInstaller::Verify() {
    for (const PendingFile& file : m_Update.Files) {
        if (m_Journal.Find(file.Name) == nullptr) continue;
        m_At = file.Name;
        if (FileSize(m_Files, m_Folders.Installed(file.Name)) != file.Size) throw Error(ErrorNumber::DeviceIO);
    }
}

// The staged files go first: with the journal still there, the next run takes what is left for what it is. The manifest
// goes last, since nobody asks for another run without it.
void UpdateInstaller::Finish() {
    DropStaged();
    if (m_HasJournal) DeleteFile(m_Folders.Journal);
    m_At = Text(ManifestName);
    ReplaceFile(m_Folders.Manifest, m_Folders.BackupOf(m_Update.Number) / TextPath(ManifestName));
    Log("Update " + m_Update.Number + " is installed");
    DropOldBackups();
}

// One backup is enough; of the others the manifest alone stays.
void UpdateInstaller::DropOldBackups() noexcept {
    Trap(
        [this] {
            for (const Path& number : m_Files.ListFolders(m_Folders.Backup)) {
                if (number == TextPath(m_Update.Number)) continue;
                const Path folder = m_Folders.Backup / number;
                for (const Path& name : m_Files.List(folder)) {
                    if (name != m_Folders.Manifest.filename()) TryToDelete(folder / name);
                }
            }
        },
        [](const RuntimeError&) { /* the next update deletes them */ });
}

// In the order opposite to that of the installation, so that the program is the old one whatever is left to do. A
// backup is moved, not copied, which needs no room on the disk; so the journal tells first that some may be gone.
void UpdateInstaller::Undo() {
    DropPrepared();
    if (!m_HasJournal) {
        DropCopied();
        return;
    }
    std::vector<JournalEntry>& entries = m_Journal.Entries;
    const auto isUntouched = [this](const JournalEntry& entry) { return m_Replaced.count(UpperCase(entry.Name)) == 0; };
    const auto own = entries.begin() + static_cast<std::ptrdiff_t>(m_Inherited);
    entries.erase(std::remove_if(own, entries.end(), isUntouched), entries.end());
    if (!m_Journal.Undoing && !entries.empty()) {
        m_Journal.Undoing = true;
        SaveJournal(m_Files, m_Folders.Journal, m_Journal);
    }
    std::for_each(entries.rbegin(), entries.rend(), [this](const JournalEntry& entry) { PutBack(entry); });
    if (const PendingFile* const lost = LostByUndo()) {
        // Before the journal, without which the next run would take that file for current.
        DeleteFile(m_Folders.Manifest);
        m_IsDropped = true;
        Log("The update is removed: " + lost->Name + " is not staged any more");
    }
    DeleteFile(m_Folders.Journal);
    DropCopied();
    if (!entries.empty()) Log("The files that were replaced are back");
    m_Journal = {};
    m_HasJournal = false;
    m_Inherited = 0;
}

void UpdateInstaller::PutBack(const JournalEntry& entry) {
    const Path installed = m_Folders.Installed(entry.Name);
    const Path saved = m_Folders.Saved(entry.Number, entry.Name);
    if (!entry.WasThere) {
        DeleteFile(installed);
    } else if (m_Files.Exists(saved)) {
        // One that was not replaced may be in use.
        if (!HaveSameContents(m_Files, saved, installed)) ReplaceInstalled(saved, entry.Name, entry.Number);
    } else if (FileSize(m_Files, installed) != entry.Size) {
        Log("The backup of " + entry.Name + " is missing");
    }
}

bool UpdateInstaller::TryToUndo() noexcept {
    Trap([this] { Undo(); },
         [this](const RuntimeError& error) { Log("The old version cannot be put back: " + error.Line()); });
    return !m_Files.Exists(m_Folders.Journal);
}

UpdateResult UpdateInstaller::Refuse(const UpdateDefect& defect) noexcept {
    Log("The update is refused: " + defect.Description);
    if (!TryToUndo()) return {UpdateOutcome::Halfway, defect.Description};
    TryToDelete(m_Folders.Manifest);
    DropStaged();
    return {UpdateOutcome::Refused, defect.Description};
}

UpdateResult UpdateInstaller::Fail(const RuntimeError& error) noexcept {
    const Text reason = (m_At.empty() ? "" : m_At + ": ") + error.Line();
    if (m_IsInstalled) {
        Log("The update is installed, but stays pending: " + reason);
        return {UpdateOutcome::Installed, {}};
    }
    Log("The update cannot be installed now: " + reason);
    // The old version must not come back under an update that counts, for all this run knows, on files of the new one.
    const bool isUnread = m_Update.Number.empty() && m_Files.Exists(m_Folders.Manifest);
    const bool isUndone = !(m_HasJournal && isUnread) && TryToUndo();
    const UpdateOutcome whole = m_IsDropped ? UpdateOutcome::Refused : UpdateOutcome::Failed;
    return {isUndone ? whole : UpdateOutcome::Halfway, reason, IsDenial(error)};
}

bool UpdateInstaller::IsInherited(const Text& name) const {
    const JournalEntry* const entry = m_Journal.Find(name);
    return entry != nullptr && static_cast<size_t>(entry - m_Journal.Entries.data()) < m_Inherited;
}

void UpdateInstaller::ReplaceInstalled(const Path& from, const Text& name, const Text& number) {
    for (int retry = 0;; ++retry) {
        try {
            ReplaceOrMove(from, name, number);
            return;
        } catch (const RuntimeError& error) {
            if (!IsDenial(error) || retry == Retries) throw;
        }
        m_Pump.ProcessMessages();
        m_Pump.Sleep(RetryMs);
    }
}

void UpdateInstaller::ReplaceOrMove(const Path& from, const Text& name, const Text& number) {
    const Path installed = m_Folders.Installed(name);
    try {
        ReplaceFile(from, installed);
        return;
    } catch (const RuntimeError& error) {
        if (!IsDenial(error) || IsNeededToStart(name, m_Program) || !m_Files.Exists(installed)) throw;
    }
    MoveAside(installed, name, number);
    // Should this fail, the journal has the file put back.
    m_Replaced.insert(UpperCase(name));
    m_Files.Replace(from, installed);
}

void UpdateInstaller::MoveAside(const Path& installed, const Text& name, const Text& number) {
    int count = 1;
    while (m_Files.Exists(m_Folders.Aside(number, name, count))) ++count;
    m_Files.Replace(installed, m_Folders.Aside(number, name, count));
    Log(name + " is in use and was moved aside");
}

void UpdateInstaller::ReplaceFile(const Path& from, const Path& to) {
    if (m_Files.Exists(to)) m_Files.ClearAttributes(to);
    m_Files.Replace(from, to);
}

void UpdateInstaller::DeleteFile(const Path& path) {
    if (!m_Files.Exists(path)) return;
    m_Files.ClearAttributes(path);
    m_Files.Delete(path);
}

void UpdateInstaller::TryToDelete(const Path& path) noexcept {
    Trap([&] { DeleteFile(path); },
         [&](const RuntimeError& error) { Log("Delete " + PathText(path.filename()) + ": " + error.Line()); });
}

void UpdateInstaller::DropPrepared() noexcept {
    for (const PendingFile& file : m_Update.Files) TryToDelete(m_Folders.Prepared(m_Update.Number, file.Name));
}

void UpdateInstaller::DropCopied() noexcept {
    for (const Path& copy : m_Copied) TryToDelete(copy);
}

void UpdateInstaller::DropStaged() noexcept {
    Trap(
        [this] {
            for (const Path& name : m_Files.List(m_Folders.Updates)) {
                if (name != m_Folders.Manifest.filename()) TryToDelete(m_Folders.Updates / name);
            }
        },
        [](const RuntimeError&) { /* the next check deletes them */ });
}

void UpdateInstaller::Advance(size_t bytes) {
    m_Done += static_cast<std::int64_t>(bytes);
    m_Progress(static_cast<int>(std::min(WholePercent, m_Done * WholePercent / std::max<std::int64_t>(m_Total, 1))));
}

}  // namespace tb
