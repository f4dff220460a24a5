#include "refdata/DataFile.h"

#include "components/tbXML/Document.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr int MostFetches = 2;

}  // namespace

Text OpenDefaultsFile(const ServiceAccess& access, const std::filesystem::path& Path, RuntimeError* Failure) noexcept {
    Text plain;
    Trap(
        [&] {
            const Text framed = ReadWholeFile(access.Program.System.Files, Path);
            ChkEncryptString(framed, plain, access.Log);
        },
        [&](const RuntimeError& error) {
            access.Log.WriteLog("Error Open Defaults File: " + error.Line(), LogLevel::Always);
            if (Failure != nullptr) *Failure = error;
        });
    return plain;
}

ElementPtr DocumentRoot(const Text& plain) {
    Document document;
    document.LoadXML(plain);
    return document.Root();
}

xmlINI ThrowAwaySettings(const App& app) {
    return xmlINI({app.System.Files, app.System.Clock, app.System.Dialogs, app.Product.Separators, {}});
}

RuntimeError Defect(const Text& description) { return {Error(ErrorNumber::InvalidCall).Number, description}; }

Date OldestDate() { return Date(CivilDate{2000, 1, 1, 0, 0, 0}); }

LoadedFile LoadDataFile(const ServiceAccess& access, const DataFile& file, const Text& MinVersion,
                        const std::function<void()>& retrieve) {
    const std::filesystem::path path = access.DataFile(file.Name);
    for (int fetches = 0;; ++fetches) {
        RuntimeError failure(0, {});
        const Text text = OpenDefaultsFile(access, path, &failure);
        if (text.empty()) {
            access.Log.WriteLog(file.FormatError, LogLevel::Always);
            return {nullptr, failure};
        }
        const ElementPtr root = DocumentRoot(text);
        if (MinVersion.empty() || root->FindAttributeValue("Version") >= MinVersion) return {root, std::nullopt};
        if (fetches == MostFetches) break;
        access.Program.System.Files.Delete(path);
        retrieve();
    }
    access.Log.WriteLog(file.VersionError, LogLevel::Always);
    return {};
}

}  // namespace tb
