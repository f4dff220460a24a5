// One check for a program update: fetches the manifest, stages the files that are newer than the installed ones, and
// stores the manifest beside them for the updater. Folders and lines: docs/formats/update-manifest.md. Where the
// deployment names a key, only what is signed with it is taken: the manifest before the first download, each file
// before it is moved or counted; and those are fetched that have not the signed hash, since versions are not signed.
// Thread: the user-interface thread. Each exchange serves messages, so a handler may ask for the end of the check, and
// the program's settings may go meanwhile; the check then ends with an error's line.
#pragma once

#include <functional>

#include "base/event.h"
#include "components/tbXML/Element.h"
#include "refdata/ServiceAccess.h"
#include "refdata/manifest/UpdateManifest.h"

namespace tb {

class cUpdate {
public:
    // `needToExit`: the exit of the program has been asked for.
    cUpdate(ServiceAccess access, std::function<bool()> needToExit)
        : m_Access(std::move(access)), m_NeedToExit(std::move(needToExit)) {}

    // All that the check says.
    Event<Text, LogLevel> LogMessage;
    // How much of the files is through, 0 to 100 by their sizes; 0 when the check is given up.
    Event<std::int16_t> StatusPercent;

    // True asks for the end of the check. A file in transfer comes to its end first.
    bool StopUpdate() const { return m_StopUpdate; }
    void StopUpdate(bool stop) { m_StopUpdate = stop; }

    // How many files wait for the updater now: 0 when there is nothing new, after a stop and after an error that cut
    // the check short; -1 when there was no manifest, it was refused, or a file failed. Only a result above 0 has made
    // something pending. With `Manual` the user is told that the program is current. The installed files are those of
    // App::Components.
    std::int16_t DoCheckForUpdates(bool Manual) noexcept;

private:
    // What the check has staged so far.
    struct Staged {
        std::int32_t Count = 0;
        Text Names;
    };

    // The steps of the check; whatever they raise ends it.
    std::int16_t Check(bool manual);
    Text RememberThisCheck();
    ElementPtr GetManifest(Sender& sender);
    Text ManifestPage(const Text& name);
    bool IsPending(std::int32_t number);
    void ClearPending();
    // That of the last update that was taken; below any other when it is none.
    std::int32_t LastNumber() const;
    std::int16_t UpToDate(bool manual);
    std::int16_t Stage(Sender& sender, const Element& manifest, const Text& previous);
    std::int16_t Finish(const Element& manifest, const Staged& staged);
    std::int16_t Cancel(const Text& previous);

    // The deployment names a key.
    bool MustBeSigned() const { return !Program().Product.UpdateKey.empty(); }
    // The service has a signature of the manifest by the key; else a line.
    bool IsSigned(Sender& sender, const Element& manifest);
    bool HasSignedHash(const UpdateFile& file, const std::filesystem::path& path) const;
    // A line.
    void LogRefusal(const Text& reason) const { Log("Update refused: " + reason); }

    // Every file of the manifest can be taken for one, and stands there once; else a line.
    bool AreFilesSound(const Element& manifest);
    // False when the file failed, with a line.
    bool DownloadUpdateFile(Sender& sender, const Element& child, const Text& folder, Staged& staged) noexcept;
    bool Fetch(Sender& sender, const UpdateFile& file, const Text& folder, Staged& staged);
    // The installed file need not be fetched.
    bool IsCurrent(const UpdateFile& file) const;
    // The most that a server may send for it.
    std::uint64_t ReplyLimit(const UpdateFile& file) const;
    void LogVersions(const UpdateFile& file);
    // The file on the disk has the manifest's size; else a line.
    bool HasSize(const UpdateFile& file, const std::filesystem::path& local);
    void InstallUpdater(const std::filesystem::path& local);

    bool NeedToExit() const { return m_NeedToExit && m_NeedToExit(); }
    void WriteMainSetting(const char* key, const Text& value);
    void WriteManifest(const Element& manifest, const std::filesystem::path& path);
    void Log(const Text& line, LogLevel level = LogLevel::Always) const { LogMessage.Raise(line, level); }
    App& Program() const { return m_Access.Program; }

    ServiceAccess m_Access;
    std::function<bool()> m_NeedToExit;
    bool m_StopUpdate = false;
};

}  // namespace tb
