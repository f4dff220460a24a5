// The updater's journal: whatever lies in it is loaded whole or refused with an error that the updater takes for
// damage, and what was loaded is the same after it was saved and loaded again. No entry leads out of the folders.
#include <cstdlib>

#include "components/tbXML/XmlParser.h"
#include "fakes/FakeFiles.h"
#include "refdata/manifest/UpdateManifest.h"
#include "updater/Journal.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

bool IsDamage(std::int32_t number) {
    return number == tb::XmlErrorNumber || number == static_cast<std::int32_t>(tb::ErrorNumber::TypeMismatch) ||
           number == static_cast<std::int32_t>(tb::ErrorNumber::Overflow);
}

bool IsSame(const tb::JournalEntry& one, const tb::JournalEntry& other) {
    return one.Name == other.Name && one.Number == other.Number && one.WasThere == other.WasThere &&
           one.Size == other.Size;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tb::FakeFiles files;
    files.Folders.insert("/b");
    files.Contents["/b/j"] = tb::Text(reinterpret_cast<const char*>(data), size);
    tb::Journal journal;
    try {
        journal = tb::LoadJournal(files, "/b/j");
    } catch (const tb::RuntimeError& error) {
        Require(IsDamage(error.Number));
        return 0;
    }
    for (const tb::JournalEntry& entry : journal.Entries) {
        Require(tb::IsPlainFileName(entry.Name) && tb::IsPlainFileName(entry.Number));
        Require(journal.Find(tb::UpperCase(entry.Name)) != nullptr);
    }
    tb::SaveJournal(files, "/b/j", journal);
    const tb::Journal again = tb::LoadJournal(files, "/b/j");
    Require(again.Undoing == journal.Undoing && again.Entries.size() == journal.Entries.size());
    for (size_t index = 0; index < again.Entries.size(); ++index) {
        Require(IsSame(again.Entries[index], journal.Entries[index]));
    }
    return 0;
}
