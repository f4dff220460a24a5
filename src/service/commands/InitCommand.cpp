#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "service/commands/ServiceCommands.h"
#include "service/store/ServiceStore.h"

namespace tb {

void InitCommand(const std::filesystem::path& folder, const Words& words) {
    const Options options(words, {});
    if (!options.Words().empty()) throw UsageError("unexpected " + options.Words().front());
    const ServiceStore store(folder, ServiceStore::Opening::OrNew);
    const Text file = ServiceStoreFile(folder).string();
    WriteStandardOutput(store.IsNew() ? "made a new store, " + file + "\n"
                                      : file + " is there already and stays as it is\n");
}

}  // namespace tb
