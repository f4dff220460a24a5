#include <cstdio>

#include "commandline/InputFiles.h"
#include "commandline/Options.h"
#include "platform/posix/PosixFiles.h"
#include "service/commands/ServiceCommands.h"
#include "service/commands/StoreToFill.h"
#include "service/store/Documents.h"

namespace tb {

namespace {

using Publishing = StoredDocument (Documents::*)(const Text& xml);

void Publish(const std::filesystem::path& folder, const Words& words, TextView name, Publishing publish) {
    const Options options(words, {});
    if (options.Words().size() != 1) throw UsageError("publish takes one file");
    const Text& path = options.Words().front();
    PosixFiles files;
    const Text xml = ReadInputFile(files, path, "an XML document");
    try {
        StoreToFill store(folder);
        Documents documents(store);
        const StoredDocument document = (documents.*publish)(xml);
        std::printf("published %s, version %s, %zu bytes\n", Text(name).c_str(), Quoted(document.Version).c_str(),
                    document.Framed.size());
    } catch (const RuntimeError& error) {
        if (error.Number != InputErrorNumber) throw;
        throw InputError(path + ": " + error.Description);
    }
}

}  // namespace

void PublishDefaultsCommand(const std::filesystem::path& folder, const Words& words) {
    Publish(folder, words, DefaultsFile, &Documents::PublishDefaults);
}

void PublishReferenceCommand(const std::filesystem::path& folder, const Words& words) {
    Publish(folder, words, ReferenceFile, &Documents::PublishReference);
}

}  // namespace tb
