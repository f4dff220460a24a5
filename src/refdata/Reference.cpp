#include "refdata/Reference.h"

#include <algorithm>
#include <iterator>

#include "components/tbXML/Document.h"
#include "platform/AtomicWrite.h"
#include "refdata/BuiltInReference.h"
#include "refdata/WebFiles.h"
#include "refdata/mFileInfo.h"
#include "shell/helpers/GeneralHelpers.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr const char* LoadError = "Error Load Reference Data: ";
constexpr const char* StartError = "Error TrawlMain: LoadReferenceData ";

// The globals without which the program cannot work.
constexpr const char* RequiredTables[] = {"CATEGORIES", "SUBMISSIONS", "DISPOSITIONS"};

// Older than what any server has.
constexpr CivilDate BuiltInDate{2000, 1, 1, 0, 0, 0};

ElementPtr BuiltInRoot() {
    Document document;
    document.LoadXML(BuiltInReference());
    return document.Root();
}

const ElementPtr& Required(const ElementPtr& element) {
    if (element == nullptr) throw Error(ErrorNumber::ObjectNotSet);
    return element;
}

}  // namespace

bool Reference::RetrieveReference() noexcept {
    bool fetched = false;
    Trap(
        [&] {
            fetched = WebFiles(m_Access).GetFileFromWebService(m_Access.Servers("ReferenceSVR"), FileName, FileName);
        },
        [&](const RuntimeError& error) { WriteLine("Error Retrieving Reference Data: ", error); });
    return fetched;
}

bool Reference::LoadReference(const Text& MinVersion) noexcept {
    return !Load([&] { return ReadFile(MinVersion); });
}

LoadedFile Reference::ReadFile(const Text& MinVersion) {
    const DataFile file{FileName, "Load reference data format error", "Load reference version error"};
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
            LoadGlobals(*loaded.Root);
            LoadTables(*loaded.Root);
        },
        [&](const RuntimeError& error) {
            failure = error;
            WriteLine(LoadError, error);
        });
    return failure;
}

void Reference::LoadGlobals(const Element& root) {
    const std::shared_ptr<xmlINI> settings = m_Access.Settings();
    const Text version = root.FindAttributeValue("Version");
    if (!version.empty()) settings->ReplaceGlobals("REFERENCEVERSION", version);
    for (const char* const name : RequiredTables) settings->ReplaceGlobals(name, Required(root.FindElement(name)));
    if (const ElementPtr words = root.FindElement("EVILWORDS")) settings->ReplaceGlobals("EVILWORDS", words->Body());
}

void Reference::LoadTables(const Element& root) {
    if (const ElementPtr domains = root.FindElement("WHITELIST")) {
        m_Tables.WhiteList = std::make_unique<WhiteListDB>();
        for (const Text& domain : Split(domains->Body(), ',')) m_Tables.WhiteList->AddToDB(domain);
    }
    const ElementPtr countries = Required(root.FindElement("COUNTRIES"));
    m_Tables.Countries.LoadCountries({countries->begin(), countries->end()});
    if (const ElementPtr ranges = root.FindElement("GEOIP")) {
        m_Tables.Countries.LoadIPCountry(Text(Trim(ranges->Body())));
    }
}

bool Reference::LoadReferenceData() noexcept {
    bool stops = false;
    Trap(
        [&] {
            bool hasFile = m_Access.Program.System.Files.Exists(m_Access.DataFile(FileName));
            if (!hasFile) {
                m_Access.Log.WriteLog(Text("Missing Reference File: ") + FileName, LogLevel::Always);
                hasFile = RetrieveReference() || WriteBuiltIn();
            }
            const std::optional<RuntimeError> failure = Load([&] {
                return hasFile ? ReadFile({}) : LoadedFile{BuiltInRoot(), {}};
            });
            // The built-in document fails too, behind its tables: it has no countries.
            if (failure && !HasTables()) throw RuntimeError(*failure);
        },
        [&](const RuntimeError& error) {
            stops = true;
            WriteLine(StartError, error);
            Trap([&] { ShowMessage(m_Access.Program, StartError + error.Line(), MessageButtons::Critical); },
                 [](const RuntimeError&) { /* the line is in the log */ });
        });
    return stops;
}

bool Reference::WriteBuiltIn() noexcept {
    Files& files = m_Access.Program.System.Files;
    const std::filesystem::path path = m_Access.DataFile(FileName);
    bool written = false;
    Trap(
        [&] {
            WriteFileAtomically(files, path, [](FileWriter& to) { to.Write(EncryptStringChk(BuiltInReference())); });
            const Date old(BuiltInDate);
            SetFileDates(files, path, old, old, old, true);
            written = true;
        },
        [&](const RuntimeError& error) {
            WriteLine(StartError, error);
            // With the date of today it would pass for newer than what the servers have.
            Trap([&] { files.Delete(path); }, [](const RuntimeError&) { /* it was not written */ });
        });
    return written;
}

bool Reference::IsBuiltIn() const {
    Date created;
    Date accessed;
    Date modified;
    GetFileDates(m_Access.Program.System.Files, m_Access.DataFile(FileName), created, accessed, modified);
    return modified == Date(BuiltInDate);
}

bool Reference::HasTables() const {
    return std::all_of(std::begin(RequiredTables), std::end(RequiredTables),
                       [&](const char* name) { return m_Access.Settings()->TryGlobalsSection(name) != nullptr; });
}

void Reference::WriteLine(const char* what, const RuntimeError& error) const {
    m_Access.Log.WriteLog(what + error.Line(), LogLevel::Always);
}

}  // namespace tb
