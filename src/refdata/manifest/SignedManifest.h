// What the signature of an update manifest is over, and how it is written. Publisher and program make the same text of
// the same manifest: docs/formats/update-manifest.md has it byte for byte.
#pragma once

#include <filesystem>

#include "platform/Files.h"
#include "platform/Signatures.h"
#include "refdata/manifest/UpdateManifest.h"

namespace tb {

// The page beside the manifest, and the file beside a manifest in a file.
inline constexpr const char* SignatureSuffix = ".sig";

// A hash as manifests write it: 64 lower-case hexadecimal digits.
bool IsFileHash(TextView text);
Text FileHash(TextView sha256);
// Of a file, read piece by piece; raises what reading raises.
Text HashOfFile(Files& files, Signatures& signatures, const std::filesystem::path& path);

// The text that is signed: the manifest's number and, of every file that takes part, name, size and hash. Error 13 when
// one of these is none, a hash that is not there included, 6 for a number above 31 bits.
Text SignedText(const Element& manifest);

// A key or a signature as it stands in files and on pages: Base64 of its 64 bytes and a line feed. Reading disregards
// blanks and line ends around it, and gives nothing for any other text.
Text P256Text(TextView bytes);
Text ReadP256Text(TextView text);

}  // namespace tb
