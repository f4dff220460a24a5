#include "refdata/cUpdate.h"

#include <algorithm>

#include "base/codepage.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "platform/AtomicWrite.h"
#include "refdata/PendingUpdates.h"
#include "shell/helpers/Folders.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/SettingValues.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr std::int16_t NothingStaged = 0;
constexpr std::int16_t Failed = -1;

constexpr const char* LastUpdateDate = "LastUpdateDate";
constexpr const char* LastUpdateVersion = "LastUpdateVersion";

}  // namespace

std::int16_t cUpdate::DoCheckForUpdates(bool Manual) noexcept {
    return TrapOr(
        NothingStaged, [&] { return Check(Manual); },
        [&](const RuntimeError& error) { Log("Update CheckUpdates " + error.Line()); });
}

std::int16_t cUpdate::Check(bool manual) {
    const Text previous = RememberThisCheck();
    const std::unique_ptr<Sender> sender = m_Access.MakeSender();
    sender->Key(GetClientKey(Program()));
    EnsureDirectory(Program(), UpdatesFolder(Program()));
    EnsureDirectory(Program(), BackupFolder(Program()));
    const ElementPtr manifest = GetManifest(*sender);
    if (manifest == nullptr) {
        // The transport breaks off at an exit.
        if (NeedToExit()) return Cancel(previous);
        Log("No update manifest found");
        return Failed;
    }
    const std::int32_t number = ManifestNumber(*manifest);
    Log("Received installation instructions " + manifest->FindAttributeValue("VERSION"));
    if (IsPending(number)) {
        Log("Pending updates to install.");
        return NothingStaged;
    }
    ClearPending();
    const std::int32_t last = LastNumber();
    // A signature never ages, so an old update with its holes could be offered as long as there are copies of it.
    if (MustBeSigned() && number < last) {
        LogRefusal("number " + std::to_string(number) + " is older than " + std::to_string(last));
        return Failed;
    }
    if (number <= last && !Program().NeedToUpdate) return UpToDate(manual);
    return Stage(*sender, *manifest, previous);
}

// Before any request, so that a failing service is not asked again before the next day. The date before.
Text cUpdate::RememberThisCheck() {
    Text previous = m_Access.Settings()->GetXMLString("Main", LastUpdateDate, {});
    WriteMainSetting(LastUpdateDate, FormatDateTime(Program().System.Clock.Now(), Program().Product.Separators));
    Log("Checking for updates. Last checked on: " + previous);
    return previous;
}

ElementPtr cUpdate::GetManifest(Sender& sender) {
    Text reply;
    bool framed = false;
    sender.ReplyLimit(Sender::SmallReplyLimit);
    for (const bool second : {false, true}) {
        const Text page = ManifestPage(second ? "updates.bin" : Text(ManifestName));
        const ElementPtr servers = m_Access.Settings()->TryGlobalsElement("SERVERS", "NAME", "UpdatesSVR");
        if (servers == nullptr) {
            Log("Error retrieving manifest: no servers");
            continue;
        }
        const Text error = sender.PostRequest(servers, page, {}, reply, {});
        framed = second;
        if (error.empty()) break;
        Log("Error retrieving manifest: " + error);
    }
    sender.ReplyLimit(Sender::DataReplyLimit);
    Text plain = reply;
    if (framed && !reply.empty() && !ChkEncryptString(reply, plain, m_Access.Log)) return nullptr;
    if (plain.empty()) return nullptr;
    Document document;
    document.LoadXML(plain);
    return document.Root();
}

Text cUpdate::ManifestPage(const Text& name) {
    const Text version = m_Access.Settings()->GetXMLString("MAIN", "TestVersion", {});
    if (version.empty()) return name;
    Text page = "/Versions/" + version + "/" + name;
    Log("Test Version: " + version + ", " + page);
    return page;
}

bool cUpdate::IsPending(std::int32_t number) {
    if (!HasPendingUpdates(Program())) return false;
    return TrapOr(
        false,
        [&] {
            Document pending;
            pending.Load(Program().System.Files, PendingManifest(Program()));
            return ManifestNumber(*pending.Root()) == number;
        },
        // A manifest that the updater could not read either must not keep a good one away.
        [&](const RuntimeError& error) { Log("Update CheckUpdates " + error.Line()); });
}

void cUpdate::ClearPending() {
    Files& files = Program().System.Files;
    const std::filesystem::path folder = UpdatesFolder(Program());
    std::vector<std::filesystem::path> names = files.List(folder);
    if (names.empty()) return;
    Log("Clearing old pending updates. ");
    // The manifest first: files that are not all there must never be pending.
    std::partition(names.begin(), names.end(),
                   [](const std::filesystem::path& name) { return LowerCase(PathText(name)) == ManifestName; });
    for (const std::filesystem::path& name : names) {
        files.ClearAttributes(folder / name);
        files.Delete(folder / name);
    }
}

std::int32_t cUpdate::LastNumber() const {
    const Text last = m_Access.Settings()->GetXMLString("MAIN", LastUpdateVersion, "0");
    return TrapOr(
        -1, [&] { return ToInt32(last); }, [](const RuntimeError&) { /* it is none */ });
}

std::int16_t cUpdate::UpToDate(bool manual) {
    const Text line = Program().Product.ProductName + " is up to date.";
    Log(line + " ");
    if (manual) ShowMessage(Program(), line, MessageButtons::Information);
    return NothingStaged;
}

std::int16_t cUpdate::Stage(Sender& sender, const Element& manifest, const Text& previous) {
    if (!AreFilesSound(manifest)) return Failed;
    if (MustBeSigned() && !IsSigned(sender, manifest)) return NeedToExit() ? Cancel(previous) : Failed;
    const Text folder = manifest.FindAttributeValue("VERSION");
    EnsureDirectory(Program(), BackupFolder(Program()) / TextPath(folder));
    const auto total = static_cast<double>(TotalDownloadSize(manifest));
    std::int64_t done = 0;
    Staged staged;
    for (const ElementPtr& child : manifest) {
        if (m_StopUpdate || NeedToExit()) return Cancel(previous);
        if (!TakesPart(*child)) continue;
        if (!DownloadUpdateFile(sender, *child, folder, staged)) {
            return NeedToExit() ? Cancel(previous) : Failed;
        }
        if (total <= 0) continue;
        done += ReadFileElement(*child, {}).SIZE;
        StatusPercent.Raise(NarrowToInt16(RoundToInt32(static_cast<double>(done) * 100 / total)));
    }
    return Finish(manifest, staged);
}

std::int16_t cUpdate::Finish(const Element& manifest, const Staged& staged) {
    const Text number = manifest.FindAttributeValue("VERSION");
    if (staged.Count > 0) {
        WriteManifest(manifest, PendingManifest(Program()));
        Log("Downloaded " + std::to_string(staged.Count) + " " + Program().Product.ProductName + " update file" +
            (staged.Count > 1 ? "s: " : ": ") + staged.Names);
    } else {
        WriteManifest(manifest, BackupFolder(Program()) / TextPath(number) / TextPath(ManifestName));
        Log("Completed checking update instructions - no update files to install");
    }
    WriteMainSetting(LastUpdateVersion, number);
    return NarrowToInt16(staged.Count);
}

std::int16_t cUpdate::Cancel(const Text& previous) {
    WriteMainSetting(LastUpdateDate, previous);
    Log("Cancelling Update");
    StatusPercent.Raise(0);
    return NothingStaged;
}

void cUpdate::WriteMainSetting(const char* key, const Text& value) {
    // A message that they cannot be saved serves messages.
    const std::shared_ptr<xmlINI> settings = m_Access.Settings();
    settings->WriteXMLString("Main", key, value);
    settings->SaveXMLINI();
}

void cUpdate::WriteManifest(const Element& manifest, const std::filesystem::path& path) {
    WriteFileAtomically(Program().System.Files, path, [&](FileWriter& writer) { writer.Write(manifest.XML()); });
}

}  // namespace tb
