#include "refdata/Components.h"

#include "base/codepage.h"
#include "base/errors.h"
#include "refdata/mFileInfo.h"
#include "shell/helpers/SystemInfo.h"
#include "shell/helpers/Versions.h"

namespace tb {

namespace {

constexpr const char* NoVersion = "0.0.0";

Text FolderText(const App& app, const Text& path) {
    const SystemInfo system(app.System.Machine);
    Text folder = path.empty() ? "{AppDir}" : path;
    folder = ReplaceAll(folder, "{AppDir}", app.AppPath() + "\\");
    folder = ReplaceAll(folder, "{WinDir}", system.WindowsDir());
    folder = ReplaceAll(folder, "{WinSysDir}", system.SystemDir());
    return folder;
}

// Nothing for a file that is there and cannot be looked at.
std::optional<ComponentRecord> MakeRecord(const App& app, const Text& path, const Text& fileName, bool required) {
    const Text folder = FolderText(app, path);
    const std::filesystem::path file = (path.empty() ? app.Path() : TextPath(folder)) / TextPath(fileName);
    Files& files = app.System.Files;
    ComponentRecord record;
    record.FILENAME = fileName;
    record.REQUIRED = required;
    record.MISSING = !files.Exists(file);
    if (record.MISSING) {
        record.PATHNAME = folder;
        return record;
    }
    Trap([&] { files.ClearAttributes(file); }, [](const RuntimeError&) { /* it is for whoever replaces the file */ });
    return TrapOr(
        std::optional<ComponentRecord>(),
        [&] {
            FileInfo info;
            const bool versioned = GetFileInfo(files, app.System.FileVersions, file, info);
            if (versioned) record.PATHNAME = folder;
            record.VERSION = versioned ? info.FileVersion : NoVersion;
            record.CREATEDATE = info.CreatedDate;
            record.MODIFIEDDATE = info.ModifiedDate;
            return std::optional(record);
        },
        [](const RuntimeError&) { /* no record */ });
}

}  // namespace

void AddComponent(App& app, const Text& path, const Text& fileName, bool required) {
    if (!app.Components) throw Error(ErrorNumber::ObjectNotSet);
    if (std::optional<ComponentRecord> record = MakeRecord(app, path, fileName, required)) {
        app.Components->Add(std::move(*record));
    }
}

void RefreshComponent(App& app, TextView fileName) {
    const ComponentRecord* const known = app.Components ? app.Components->Find(fileName) : nullptr;
    if (known == nullptr) return;
    if (std::optional<ComponentRecord> record = MakeRecord(app, {}, known->FILENAME, known->REQUIRED)) {
        app.Components->Replace(std::move(*record));
    }
}

bool IsComponentOutOfDate(const App& app, const Text& name, const Text& version, const Date& date) {
    if (!app.System.Files.Exists(app.Path() / TextPath(name))) return true;
    if (!app.Components) throw Error(ErrorNumber::ObjectNotSet);
    const ComponentRecord& record = app.Components->Item(name);
    if (record.VERSION.empty() || record.VERSION == "0.0.0") {
        return !record.MODIFIEDDATE || date > *record.MODIFIEDDATE;
    }
    return IsVersionNewerThan(version, record.VERSION, false);
}

}  // namespace tb
