#include "updater/PendingUpdate.h"

#include <algorithm>
#include <set>

#include "components/tbXML/Document.h"
#include "updater/FileContents.h"

namespace tb {

namespace {

// The one library that the program is linked with; it asks the user about updates without the others.
constexpr TextView LinkedLibrary = "tbXML.dll";

int Place(const Text& name, const Text& program) {
    if (UpperCase(name) == UpperCase(program)) return 2;
    return UpperCase(name) == UpperCase(LinkedLibrary) ? 1 : 0;
}

PendingUpdate ReadManifest(const Text& text) {
    Document document;
    document.LoadXML(text);
    PendingUpdate update;
    update.Number = document.Root()->FindAttributeValue("VERSION");
    ManifestNumber(*document.Root());
    std::set<Text> names;
    for (const ElementPtr& child : document) {
        if (!TakesPart(*child)) continue;
        const UpdateFile file = ReadFileElement(*child, {});
        if (!IsPlainFileName(file.FILE)) throw UpdateDefect(Quoted(file.FILE) + " is not a plain file name");
        if (!names.insert(UpperCase(file.FILE)).second) throw UpdateDefect(Quoted(file.FILE) + " is named twice");
        if (UpperCase(file.FILE) == UpperCase(UpdaterName)) continue;
        update.Files.push_back({file.FILE, static_cast<std::uint64_t>(file.SIZE)});
    }
    return update;
}

Text SizeText(std::uint64_t size) { return std::to_string(size) + " bytes"; }

}  // namespace

bool IsNeededToStart(const Text& name, const Text& program) { return Place(name, program) > 0; }

PendingUpdate ReadPendingUpdate(Files& files, const UpdateFolders& folders, const Text& program) {
    const Text text = ReadWholeFile(files, folders.Manifest);
    PendingUpdate update;
    try {
        update = ReadManifest(text);
    } catch (const RuntimeError& error) {
        throw UpdateDefect("the manifest: " + error.Description);
    }
    std::stable_sort(update.Files.begin(), update.Files.end(), [&](const PendingFile& one, const PendingFile& other) {
        return Place(one.Name, program) < Place(other.Name, program);
    });
    return update;
}

std::vector<PendingFile> StagedFiles(Files& files, const UpdateFolders& folders, const PendingUpdate& update,
                                     const Journal& journal) {
    std::vector<PendingFile> staged;
    for (const PendingFile& file : update.Files) {
        if (files.FolderExists(folders.Installed(file.Name))) throw UpdateDefect(file.Name + " is a folder");
        const bool isStaged = files.Exists(folders.Staged(file.Name));
        const auto path = isStaged ? folders.Staged(file.Name) : folders.Installed(file.Name);
        if (!files.Exists(path)) throw UpdateDefect(file.Name + " is neither downloaded nor installed");
        if (!isStaged && journal.Find(file.Name) == nullptr) continue;
        const std::uint64_t size = files.OpenForReading(path)->Size();
        if (size != file.Size) {
            throw UpdateDefect(file.Name + (isStaged ? ", downloaded: " : ", installed and not downloaded: ") +
                               SizeText(size) + ", " + SizeText(file.Size) + " expected");
        }
        if (isStaged) staged.push_back(file);
    }
    return staged;
}

}  // namespace tb
