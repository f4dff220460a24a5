// The files of a new version of the program and the manifest that describes them.
#pragma once

#include <filesystem>
#include <vector>

#include "components/tbXML/Element.h"
#include "platform/Files.h"
#include "service/release/ProgramVersion.h"
#include "service/signing/SigningKey.h"

namespace tb {

struct ReleaseFile {
    Text Name;
    Text Content;
    // Local.
    FileTimes Times;
};

struct Release {
    // In the order of their names.
    std::vector<ReleaseFile> Files;
    // What else lies in the folder.
    std::vector<Text> PassedOver;
};

// What a staged program folder has to install: the files in it, not below it, that end in .exe, .dll, .ocx or .chm.
// Raises an InputError for a folder without any or with a name that no client takes; what reading raises else.
Release ReadRelease(Files& files, const std::filesystem::path& folder);

// A number as manifests have it: above 0, below 2^31, decimal digits. Raises an InputError.
std::int32_t ReadReleaseNumber(const Text& text);

// The manifest of those files, unsigned. Raises an InputError that names a file which states no version that clients
// could compare, or is too long for them.
ElementPtr MakeManifest(const std::vector<ReleaseFile>& files, std::int32_t number);

// Puts the hash of each file into the manifest and returns the signature as its page has it. Raises as CheckManifest
// and as SigningKey.
Text SignManifest(Element& manifest, const std::vector<ReleaseFile>& files, const SigningKey& key);

// Raises an InputError unless clients can take the manifest and every file that takes part is there in the size, and,
// where the manifest has a hash, with the hash that it tells. A signed one must have all hashes.
void CheckManifest(const Element& manifest, const std::vector<ReleaseFile>& files, bool isSigned);

// The manifest of a file. Raises an InputError that names the file.
ElementPtr ReadManifest(Files& files, const std::filesystem::path& path);

}  // namespace tb
