#include <cstdio>

#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "service/commands/ServiceCommands.h"
#include "service/store/Documents.h"
#include "service/store/Reports.h"
#include "service/store/ServiceStore.h"
#include "service/store/SiteHistory.h"
#include "service/store/Submissions.h"
#include "service/store/Updates.h"

namespace tb {

namespace {

void PrintSites(Database& store) {
    SiteHistory history(store);
    const std::vector<Publication> recorded = history.Recorded();
    const Publication& latest = recorded.back();
    if (latest.IsNone()) {
        std::printf("sites: the store is fresh, no list is published yet; clients keep what they have\n");
        return;
    }
    std::printf("sites: %lld\nstamp: %s\n", static_cast<long long>(latest.Sites), latest.Stamp.c_str());
    std::printf("recorded: %lld changes since %s\n",
                static_cast<long long>(latest.LastChange - recorded.front().LastChange),
                recorded.front().Stamp.c_str());
}

void PrintDocuments(Database& store) {
    Documents documents(store);
    for (const TextView name : {DefaultsFile, ReferenceFile}) {
        const auto document = documents.Find(name);
        std::printf("%s: ", Text(name).c_str());
        if (document) {
            std::printf("version %s, %zu bytes, published %s UTC\n", Quoted(document->Version).c_str(),
                        document->Framed.size(), FormatDateTime(document->Modified).c_str());
        } else {
            std::printf("not published\n");
        }
    }
}

void PrintUpdates(Database& store) {
    const std::vector<PublishedUpdate> kept = Updates(store).Kept();
    if (kept.empty()) std::printf("updates: not published\n");
    for (const PublishedUpdate& update : kept) {
        std::printf("update %d%s: %s, published %s UTC\n", update.Number,
                    update.Test.empty() ? "" : (" (test version " + update.Test + ")").c_str(),
                    update.Signature.empty() ? "unsigned" : "signed", FormatDateTime(update.Published).c_str());
    }
}

void PrintReports(Database& store) {
    Reports reports(store);
    std::printf("version reports: %lld\n", static_cast<long long>(reports.Count()));
    for (const auto& [program, count] : reports.ByProgram()) {
        std::printf("    %lld of %s\n", static_cast<long long>(count), Quoted(program).c_str());
    }
}

}  // namespace

void InitCommand(const std::filesystem::path& folder, const Words& words) {
    const Options options(words, {});
    if (!options.Words().empty()) throw UsageError("unexpected " + options.Words().front());
    const ServiceStore store(folder, ServiceStore::Opening::OrNew);
    const Text file = ServiceStoreFile(folder).string();
    WriteStandardOutput(store.IsNew() ? "made a new store, " + file + "\n"
                                      : file + " is there already and stays as it is\n");
}

void StatusCommand(const std::filesystem::path& folder, const Words& words) {
    if (!words.empty()) throw UsageError("unexpected " + words.front());
    ServiceStore store(folder, ServiceStore::Opening::Existing);
    const Transaction view(store, Transaction::Kind::Read);
    PrintSites(store);
    PrintDocuments(store);
    PrintUpdates(store);
    PrintReports(store);
    std::printf("submissions: %lld\n", static_cast<long long>(Submissions(store).Count()));
}

}  // namespace tb
