#include "refdata/Reference.h"

#include <algorithm>
#include <iterator>

#include "platform/AtomicWrite.h"
#include "refdata/BuiltInReference.h"
#include "refdata/DataGuard.h"
#include "refdata/WebFiles.h"
#include "refdata/mFileInfo.h"
#include "shell/helpers/Messages.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr const char* LoadError = "Error Load Reference Data: ";
constexpr const char* StartError = "Error TrawlMain: LoadReferenceData ";

// The globals without which the program cannot work.
constexpr const char* RequiredTables[] = {"CATEGORIES", "SUBMISSIONS", "DISPOSITIONS"};
constexpr const char* Countries = "COUNTRIES";

const ElementPtr& Required(const ElementPtr& element) {
    if (element == nullptr) throw Error(ErrorNumber::ObjectNotSet);
    return element;
}

void LoadGlobals(const Element& root, xmlINI& settings) {
    const Text version = root.FindAttributeValue("Version");
    if (!version.empty()) settings.ReplaceGlobals("REFERENCEVERSION", version);
    for (const char* const name : RequiredTables) settings.ReplaceGlobals(name, Required(root.FindElement(name)));
    if (const ElementPtr words = root.FindElement("EVILWORDS")) settings.ReplaceGlobals("EVILWORDS", words->Body());
}

void LoadTables(const Element& root, const Reference::Tables& tables) {
    if (const ElementPtr domains = root.FindElement("WHITELIST")) {
        tables.WhiteList = std::make_unique<WhiteListDB>();
        for (const Text& domain : Split(domains->Body(), ',')) tables.WhiteList->AddToDB(domain);
    }
    const ElementPtr countries = Required(root.FindElement(Countries));
    tables.Countries.LoadCountries({countries->begin(), countries->end()});
    if (const ElementPtr ranges = root.FindElement("GEOIP")) {
        tables.Countries.LoadIPCountry(Text(Trim(ranges->Body())));
    }
}

struct NoHost : GeoIPHost {
    Text EvilWords() override { return {}; }
    Text HomeCountry() override { return {}; }
};

void RequireSection(const Element& root, const char* name) {
    if (root.FindElement(name) == nullptr) throw Defect(Text("there is no section ") + name);
}

}  // namespace

void Reference::Check(const App& app, const Text& plain) {
    const ElementPtr root = DocumentRoot(plain);
    // The loader would tell that something is missing, and not what.
    for (const char* const name : RequiredTables) RequireSection(*root, name);
    RequireSection(*root, Countries);
    xmlINI settings = ThrowAwaySettings(app);
    NoHost host;
    GeoIP countries(host);
    std::unique_ptr<WhiteListDB> whiteList;
    LoadGlobals(*root, settings);
    LoadTables(*root, {countries, whiteList});
    if (!countries.IsSorted()) throw Defect("its address table is defective");
}

bool Reference::RetrieveReference() noexcept {
    return TrapOr(
        false,
        [&] { return WebFiles(m_Access).GetFileFromWebService(m_Access.Servers("ReferenceSVR"), FileName, FileName); },
        [&](const RuntimeError& error) { WriteLine("Error Retrieving Reference Data: ", error); });
}

bool Reference::LoadReference(const Text& MinVersion) noexcept {
    return !Load([&] { return ReadFile(FileName, MinVersion); });
}

LoadedFile Reference::ReadFile(const Text& name, const Text& MinVersion) {
    const DataFile file{name, "Load reference data format error", "Load reference version error"};
    return LoadDataFile(m_Access, file, MinVersion, [&] { RetrieveReference(); });
}

std::optional<RuntimeError> Reference::Load(const std::function<LoadedFile()>& read) noexcept {
    std::optional<RuntimeError> failure;
    Trap(
        [&] {
            const LoadedFile loaded = read();
            if (loaded.Root == nullptr) {
                failure = loaded.FormatFailure.value_or(RuntimeError(0, {}));
                if (loaded.FormatFailure) WriteLine(LoadError, *failure);
                return;
            }
            LoadGlobals(*loaded.Root, *m_Access.Settings());
            LoadTables(*loaded.Root, m_Tables);
        },
        [&](const RuntimeError& error) {
            failure = error;
            WriteLine(LoadError, error);
        });
    return failure;
}

bool Reference::LoadReferenceData() noexcept {
    return TrapOr(
        true,
        [&] {
            bool hasFile = m_Access.Program.System.Files.Exists(m_Access.DataFile(FileName));
            if (!hasFile) {
                m_Access.Log.WriteLog(Text("Missing Reference File: ") + FileName, LogLevel::Always);
                hasFile = RetrieveReference();
            }
            const Text name = DataGuard(m_Access).FileForStart(FileName);
            hasFile = hasFile || name != FileName || WriteBuiltIn();
            const std::optional<RuntimeError> failure = Load([&] {
                return hasFile ? ReadFile(name, {}) : LoadedFile{DocumentRoot(BuiltInReference()), {}};
            });
            // The built-in document fails too, behind its tables: it has no countries.
            if (failure && !HasTables()) throw RuntimeError(*failure);
            return false;
        },
        [&](const RuntimeError& error) {
            WriteLine(StartError, error);
            Trap([&] { ShowMessage(m_Access.Program, StartError + error.Line(), MessageButtons::Critical); },
                 [](const RuntimeError&) { /* the line is in the log */ });
        });
}

bool Reference::WriteBuiltIn() noexcept {
    Files& files = m_Access.Program.System.Files;
    const std::filesystem::path path = m_Access.DataFile(FileName);
    return TrapOr(
        false,
        [&] {
            WriteFileAtomically(files, path, [](FileWriter& to) { to.Write(EncryptStringChk(BuiltInReference())); });
            const Date old = OldestDate();
            SetFileDates(files, path, old, old, old, true);
            return true;
        },
        [&](const RuntimeError& error) {
            WriteLine(StartError, error);
            // With the date of today it would pass for newer than what the servers have.
            Trap([&] { files.Delete(path); }, [](const RuntimeError&) { /* it was not written */ });
        });
}

bool Reference::IsBuiltIn() const {
    Date created;
    Date accessed;
    Date modified;
    GetFileDates(m_Access.Program.System.Files, m_Access.DataFile(FileName), created, accessed, modified);
    return modified == OldestDate();
}

bool Reference::HasTables() const {
    return std::all_of(std::begin(RequiredTables), std::end(RequiredTables),
                       [&](const char* name) { return m_Access.Settings()->TryGlobalsSection(name) != nullptr; });
}

void Reference::WriteLine(const char* what, const RuntimeError& error) const {
    m_Access.Log.WriteLog(what + error.Line(), LogLevel::Always);
}

}  // namespace tb
