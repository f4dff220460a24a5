#include <cstdio>

#include "base/errors.h"
#include "commandline/InputFiles.h"
#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "platform/posix/PosixFiles.h"
#include "refdata/manifest/SignedManifest.h"
#include "service/commands/ServiceCommands.h"
#include "service/commands/StoreToFill.h"
#include "service/signing/OpenSslSignatures.h"
#include "service/store/Documents.h"
#include "service/store/Updates.h"

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

constexpr size_t LongestTestName = 32;

// A name that needs no encoding in an address and is the same in all of them.
Text ReadTestName(const Text& name) {
    const bool isName =
        !name.empty() && name.size() <= LongestTestName && name.find("..") == Text::npos &&
        name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_") == Text::npos;
    if (!isName || name == ".") throw UsageError("--test takes up to 32 letters, digits, points, \"-\" and \"_\"");
    return name;
}

void CheckSignature(Files& files, const Element& manifest, const Text& signature, const Text& keyFile) {
    const Text key = ReadP256Text(ReadInputFile(files, keyFile, "the public key of \"tbtool keygen\""));
    if (key.empty()) throw InputError(keyFile + ": no public key");
    if (!OpenSslSignatures().VerifyP256(key, Sha256Of(SignedText(manifest)), ReadP256Text(signature))) {
        throw InputError("the manifest is not signed by the key of " + keyFile);
    }
}

// As `tbtool manifest` and `tbtool sign` left it; the signature lies beside it, or there is none.
ElementPtr ReadMade(Files& files, const Release& release, const Options& options, Text& signature) {
    const Text& path = options.Require("--manifest");
    ElementPtr manifest = ReadManifest(files, path);
    if (files.Exists(path + SignatureSuffix)) {
        signature = ReadInputFile(files, path + SignatureSuffix, "the signature of \"tbtool sign\"");
        if (ReadP256Text(signature).empty()) throw InputError(path + SignatureSuffix + ": no signature");
    }
    CheckManifest(*manifest, release.Files, !signature.empty());
    if (options.Has("--key")) CheckSignature(files, *manifest, signature, options.Require("--key"));
    return manifest;
}

ElementPtr Make(const Release& release, const Options& options, Text& signature) {
    ElementPtr manifest = MakeManifest(release.Files, ReadReleaseNumber(options.Require("--version")));
    if (options.Has("--sign")) {
        signature = SignManifest(*manifest, release.Files, SigningKey::Read(options.Require("--sign")));
    } else {
        CheckManifest(*manifest, release.Files, false);
    }
    return manifest;
}

void Tell(const PublishedUpdate& update, const Element& manifest, const Release& release) {
    for (const ElementPtr& child : manifest) {
        if (!TakesPart(*child)) continue;
        WriteStandardOutput(child->FindAttributeValue("FILE") + " " + child->FindAttributeValue("VERSION") + "\n");
    }
    if (!release.PassedOver.empty()) {
        WriteStandardOutput("passed over: " + Join(release.PassedOver, ", ") + "\n");
    }
    std::printf("published update %d%s, %lld bytes, %s\n", update.Number,
                update.Test.empty() ? "" : (", test version " + update.Test).c_str(),
                static_cast<long long>(TotalDownloadSize(manifest)), update.Signature.empty() ? "unsigned" : "signed");
}

}  // namespace

void PublishDefaultsCommand(const std::filesystem::path& folder, const Words& words) {
    Publish(folder, words, DefaultsFile, &Documents::PublishDefaults);
}

void PublishReferenceCommand(const std::filesystem::path& folder, const Words& words) {
    Publish(folder, words, ReferenceFile, &Documents::PublishReference);
}

void PublishUpdateCommand(const std::filesystem::path& folder, const Words& words) {
    const Options options(words, {"--version", "--sign", "--manifest", "--key", "--test"});
    if (options.Words().size() != 1) throw UsageError("publish update takes one folder");
    const bool isMade = options.Has("--manifest");
    if (isMade == options.Has("--version")) throw UsageError("give either --version or --manifest");
    if (isMade && options.Has("--sign")) throw UsageError("--sign goes with --version");
    if (!isMade && options.Has("--key")) throw UsageError("--key goes with --manifest");
    PublishedUpdate update;
    if (options.Has("--test")) update.Test = ReadTestName(options.Require("--test"));
    PosixFiles files;
    const Release release = ReadRelease(files, options.Words().front());
    const ElementPtr manifest =
        isMade ? ReadMade(files, release, options, update.Signature) : Make(release, options, update.Signature);
    update.Number = ManifestNumber(*manifest);
    update.Manifest = manifest->XML();
    update.Published = SystemUtcNow();
    StoreToFill store(folder);
    // Once it has been told, it is to stay, whatever happens to the machine.
    store.Run("PRAGMA synchronous=FULL");
    Updates(store).Publish(update, release.Files);
    Tell(update, *manifest, release);
}

}  // namespace tb
