#include "updater/Journal.h"

#include <algorithm>

#include "base/errors.h"
#include "components/tbXML/Document.h"
#include "platform/AtomicWrite.h"
#include "refdata/manifest/UpdateManifest.h"

namespace tb {

namespace {

constexpr TextView Going = "INSTALLING";
constexpr TextView Back = "UNDOING";

Text YesOrNo(bool value) { return value ? "Y" : "N"; }

std::uint64_t ReadSize(const Text& text) {
    const bool digits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (text.empty() || text.size() > 18 || !digits) throw Error(ErrorNumber::TypeMismatch);
    return std::stoull(text);
}

// Names from a file are never paths, from this one neither.
JournalEntry ReadEntry(const Element& child) {
    JournalEntry entry;
    entry.Name = child.FindAttributeValue("FILE");
    entry.Number = child.FindAttributeValue("VERSION");
    entry.WasThere = child.FindAttributeValue("EXISTED") == YesOrNo(true);
    entry.Size = ReadSize(child.FindAttributeValue("SIZE"));
    ManifestNumber(child);
    if (!IsPlainFileName(entry.Name)) throw Error(ErrorNumber::TypeMismatch);
    return entry;
}

}  // namespace

const JournalEntry* Journal::Find(const Text& name) const {
    const auto found = std::find_if(Entries.begin(), Entries.end(), [&](const JournalEntry& entry) {
        return UpperCase(entry.Name) == UpperCase(name);
    });
    return found == Entries.end() ? nullptr : &*found;
}

Journal LoadJournal(Files& files, const std::filesystem::path& path) {
    Journal journal;
    if (!files.Exists(path)) return journal;
    Document document;
    document.Load(files, path);
    const Text state = document.Root()->FindAttributeValue("STATE");
    if (state != Going && state != Back) throw Error(ErrorNumber::TypeMismatch);
    journal.Undoing = state == Back;
    for (const ElementPtr& child : document) journal.Entries.push_back(ReadEntry(*child));
    return journal;
}

void SaveJournal(Files& files, const std::filesystem::path& path, const Journal& journal) {
    Element root("JOURNAL");
    root.SetAttributeValue("STATE", Text(journal.Undoing ? Back : Going));
    for (const JournalEntry& entry : journal.Entries) {
        const auto child = std::make_shared<Element>("FILE");
        child->SetAttributeValue("FILE", entry.Name);
        child->SetAttributeValue("VERSION", entry.Number);
        child->SetAttributeValue("EXISTED", YesOrNo(entry.WasThere));
        child->SetAttributeValue("SIZE", std::to_string(entry.Size));
        root.AddElement(child);
    }
    WriteFileAtomically(files, path, [text = root.XML()](FileWriter& writer) { writer.Write(text); });
}

}  // namespace tb
