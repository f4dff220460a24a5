#include "base/errors.h"
#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "operator/Commands.h"
#include "platform/AtomicWrite.h"
#include "platform/posix/PosixFiles.h"
#include "refdata/manifest/SignedManifest.h"
#include "service/release/Release.h"

namespace tb {

namespace {

void WriteText(Files& files, const Text& path, const Text& text) {
    try {
        WriteFileAtomically(files, path, [&](FileWriter& writer) { writer.Write(text); });
    } catch (const RuntimeError& error) {
        throw InputError(path + ": " + error.Description);
    }
}

}  // namespace

void KeygenCommand(const std::vector<Text>& words) {
    const Options options(words, {"--out"});
    if (!options.Words().empty()) throw UsageError("unexpected " + options.Words().front());
    const Text& prefix = options.Require("--out");
    PosixFiles files;
    if (files.Exists(prefix + ".pub")) throw InputError(prefix + ".pub is there already");
    const SigningKey key = SigningKey::Generate();
    const Text line = P256Text(key.PublicKey());
    key.Write(prefix + ".pem");
    WriteText(files, prefix + ".pub", line);
    WriteStandardOutput(line);
    FlushStandardOutput();
}

void ManifestCommand(const std::vector<Text>& words) {
    const Options options(words, {"--version", "--out"});
    if (options.Words().size() != 1) throw UsageError("manifest takes one folder");
    const std::int32_t number = ReadReleaseNumber(options.Require("--version"));
    const Text& out = options.Require("--out");
    PosixFiles files;
    const Release release = ReadRelease(files, options.Words().front());
    WriteText(files, out, MakeManifest(release.Files, number)->XML());
    WriteStandardOutput(out + ": number " + std::to_string(number) + ", " + std::to_string(release.Files.size()) +
                        " files\n");
    FlushStandardOutput();
}

void SignCommand(const std::vector<Text>& words) {
    const Options options(words, {"--key"});
    if (options.Words().size() != 2) throw UsageError("sign takes a manifest and a folder");
    const Text& path = options.Words().front();
    PosixFiles files;
    const ElementPtr manifest = ReadManifest(files, path);
    const Release release = ReadRelease(files, options.Words().back());
    const Text signature = SignManifest(*manifest, release.Files, SigningKey::Read(options.Require("--key")));
    WriteText(files, path, manifest->XML());
    WriteText(files, path + SignatureSuffix, signature);
    WriteStandardOutput(path + SignatureSuffix + ": number " + manifest->FindAttributeValue("VERSION") +
                        " is signed\n");
    FlushStandardOutput();
}

}  // namespace tb
