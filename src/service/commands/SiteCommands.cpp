#include <cstdio>

#include "commandline/InputFiles.h"
#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "platform/posix/PosixFiles.h"
#include "service/commands/ServiceCommands.h"
#include "service/commands/StoreToFill.h"
#include "service/store/ServiceStore.h"
#include "service/store/SiteHistory.h"

namespace tb {

namespace {

std::vector<Site> ReadSites(const Text& path) {
    PosixFiles files;
    std::vector<Site> sites;
    ForEachSiteLine(files, path, [&](size_t number, const std::vector<Text>& fields) {
        try {
            for (Site& site : SitesOf(fields[0], fields[1], fields[2])) sites.push_back(std::move(site));
        } catch (const RuntimeError& error) {
            throw InputError(path + ", line " + std::to_string(number) + ": " + error.Description);
        }
    });
    return sites;
}

}  // namespace

void ImportSitesCommand(const std::filesystem::path& folder, const Words& words) {
    const Options options(words, {});
    if (options.Words().size() != 1) throw UsageError("sites import takes one file");
    const std::vector<Site> sites = ReadSites(options.Words().front());
    StoreToFill store(folder);
    SiteHistory history(store);
    const ImportResult result = history.Import(sites);
    const Publication latest = history.Latest();
    std::printf("%lld added, %lld changed, %lld unchanged, %lld repeated; %lld sites as of %s\n",
                static_cast<long long>(result.Added), static_cast<long long>(result.Changed),
                static_cast<long long>(result.Unchanged), static_cast<long long>(result.Repeated),
                static_cast<long long>(latest.Sites), latest.Stamp.c_str());
}

void RemoveSiteCommand(const std::filesystem::path& folder, const Words& words) {
    const Options options(words, {});
    if (options.Words().size() != 1) throw UsageError("sites remove takes one URL");
    const Text& url = options.Words().front();
    ServiceStore store(folder, ServiceStore::Opening::Existing);
    const std::vector<Text> removed = SiteHistory(store).Remove(SiteUrlsOf(url));
    if (removed.empty()) throw InputError(Quoted(url) + " is not listed");
    for (const Text& gone : removed) WriteStandardOutput("removed " + gone + "\n");
}

}  // namespace tb
