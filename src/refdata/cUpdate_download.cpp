#include <algorithm>
#include <set>

#include "base/codepage.h"
#include "base/errors.h"
#include "refdata/Components.h"
#include "refdata/PendingUpdates.h"
#include "refdata/cUpdate.h"
#include "refdata/mFileInfo.h"

namespace tb {

namespace {

// By the picture "###,###,###,##0"; `number` is not negative.
Text Grouped(std::uint64_t number) {
    Text digits = std::to_string(number);
    for (size_t place = digits.size(); place > 3;) digits.insert(place -= 3, 1, ',');
    return digits;
}

// Where the service keeps a file of the update with that number.
Text UpdateFilePage(const Text& folder, const Text& name) { return folder + "/" + name; }

}  // namespace

bool cUpdate::AreFilesSound(const Element& manifest) {
    bool sound = true;
    std::set<Text> names;
    const auto refuse = [&](const Text& name, const Text& reason) {
        Log("   Download file " + Quoted(name) + " failure: " + reason);
        sound = false;
    };
    Trap(
        [&] {
            for (const ElementPtr& child : manifest) {
                if (!TakesPart(*child)) continue;
                const Text name = ReadFileElement(*child, {}).FILE;
                if (!IsPlainFileName(name)) refuse(name, "not a plain file name");
                if (!names.insert(UpperCase(name)).second) refuse(name, "named twice");
            }
        },
        [&](const RuntimeError& error) {
            Log("DownloadFile: " + error.Line());
            sound = false;
        });
    return sound;
}

bool cUpdate::DownloadUpdateFile(Sender& sender, const Element& child, const Text& folder, Staged& staged) noexcept {
    return TrapOr(
        false, [&] { return Fetch(sender, ReadFileElement(child, Program().System.Clock.Now()), folder, staged); },
        [&](const RuntimeError& error) { Log("DownloadFile: " + error.Line()); });
}

bool cUpdate::Fetch(Sender& sender, const UpdateFile& file, const Text& folder, Staged& staged) {
    const ElementPtr servers = m_Access.Settings()->TryGlobalsElement("SERVERS", "NAME", "GetUpdatesSVR");
    if (servers == nullptr) {
        Log("DownloadFile: no servers!");
        return false;
    }
    const Text& name = file.FILE;
    const std::filesystem::path local = UpdatesFolder(Program()) / TextPath(name);
    LogVersions(file);
    if (IsCurrent(file)) return true;
    staged.Names += (staged.Names.empty() ? "" : ", ") + name;
    Log("   Downloading file: " + name + " " + file.VERSION + " " + Grouped(static_cast<std::uint64_t>(file.SIZE)));
    sender.ReplyLimit(ReplyLimit(file));
    const Text error = sender.DownloadFile(servers, UpdateFilePage(folder, name), {}, local);
    sender.ReplyLimit(Sender::DataReplyLimit);
    if (!error.empty()) {
        Log("   Download file " + name + " failure: " + error);
        return false;
    }
    if (MustBeSigned() && !HasSignedHash(file, local)) {
        LogRefusal(name + " is not the file that was signed");
        // Nor is anything kept of what came with it.
        ClearPending();
        return false;
    }
    SetFileDates(Program().System.Files, local, file.CreatedDate, file.AccessedDate, file.ModifiedDate, true);
    Log("   Received download file: " + name + " " + file.VERSION + " " + std::to_string(file.SIZE) + " success");
    const bool whole = HasSize(file, local);
    if (UpperCase(name) == UpperCase(UpdaterName)) {
        // It comes into use at once, unlike the others, which the updater looks at first.
        if (whole) InstallUpdater(local);
        return whole;
    }
    ++staged.Count;
    return true;
}

bool cUpdate::IsCurrent(const UpdateFile& file) const {
    if (!MustBeSigned()) return !IsComponentOutOfDate(Program(), file.FILE, file.VERSION, file.ModifiedDate);
    return TrapOr(
        false, [&] { return HasSignedHash(file, Program().Path() / TextPath(file.FILE)); },
        [](const RuntimeError&) { /* it is not there, or nobody can tell */ });
}

std::uint64_t cUpdate::ReplyLimit(const UpdateFile& file) const {
    const auto size = static_cast<std::uint64_t>(file.SIZE);
    // Without a signature a wrong size is for the updater to judge, within reason: it must not fill the disk.
    return MustBeSigned() ? size : std::clamp(2 * size, Sender::SmallReplyLimit, Sender::DataReplyLimit);
}

void cUpdate::LogVersions(const UpdateFile& file) {
    const DateSeparators& separators = Program().Product.Separators;
    const ComponentRecord* const known = Program().Components ? Program().Components->Find(file.FILE) : nullptr;
    Text version;
    Text modified;
    if (known != nullptr) {
        version = known->VERSION;
        if (known->MODIFIEDDATE) modified = FormatDateTime(*known->MODIFIEDDATE, separators);
    }
    Log("Current: " + file.FILE + " " + version + " " + modified + " Update: " + file.VERSION + " " +
            FormatDateTime(file.ModifiedDate, separators),
        LogLevel::Debug);
}

bool cUpdate::HasSize(const UpdateFile& file, const std::filesystem::path& local) {
    const std::uint64_t actual = Program().System.Files.OpenForReading(local)->Size();
    const auto expected = static_cast<std::uint64_t>(file.SIZE);
    if (actual == expected) return true;
    Log("   Download file " + file.FILE + " size incorrect: " + Grouped(expected) + ", actual size:" + Grouped(actual));
    return false;
}

void cUpdate::InstallUpdater(const std::filesystem::path& local) {
    Files& files = Program().System.Files;
    const std::filesystem::path target = Program().Path() / TextPath(UpdaterName);
    Log("   Copying tbUpdater.exe to: " + PathText(target));
    Trap(
        [&] {
            if (files.Exists(target)) files.ClearAttributes(target);
            files.Replace(local, target);
            // Or it would count as old for the rest of the run, and be fetched again and again.
            RefreshComponent(Program(), UpdaterName);
            Log("   Installation of tbUpdater.exe success");
        },
        [&](const RuntimeError&) { Log("   Move tbUpdater.exe failed, tried to move from:" + PathText(local)); });
}

}  // namespace tb
