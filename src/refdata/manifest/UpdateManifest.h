// The manifest of a program update: one root with a sequence number, one child for each file. It comes from the
// network, so nothing in it is trusted. Format: docs/formats/update-manifest.md.
#pragma once

#include <cstdint>

#include "base/date.h"
#include "components/tbXML/Element.h"

namespace tb {

// In the folder of staged files.
inline constexpr TextView ManifestName = "updates.xml";
inline constexpr TextView UpdaterName = "tbUpdater.exe";
// In the program's folder, and in that one.
inline constexpr const char* UpdatesFolderName = "Updates";
inline constexpr const char* BackupFolderName = "Backup";
// In the folder of backups, while the updater's work is neither done nor undone.
inline constexpr const char* JournalName = "installing.xml";

// What a child tells of its file.
struct UpdateFile {
    Text FILE;
    // Bytes.
    std::int32_t SIZE = 0;
    // Empty or "0.0.0" for a file without a version.
    Text VERSION;
    // To be given to the file; local times.
    Date CreatedDate;
    Date ModifiedDate;
    Date AccessedDate;
    // Of a signed update: 64 lower-case hexadecimal digits, unless it is none, see IsFileHash.
    Text SHA256 = {};
};

// The sequence number of a manifest, its attribute VERSION. The text of it is also the name of a folder here and at the
// service, so it must be decimal digits and nothing else: error 13 for any other text, 6 above 31 bits.
std::int32_t ManifestNumber(const Element& manifest);

// The child's file is to be fetched.
bool TakesPart(const Element& child);

// An empty date counts as `present`. Error 13 for a SIZE that is not decimal digits or a date that is none, 6 for a
// SIZE above 31 bits. FILE is as it stands: see IsPlainFileName.
UpdateFile ReadFileElement(const Element& child, const Date& present);

// Bytes of all files that take part. Raises as above.
std::int64_t TotalDownloadSize(const Element& manifest);

// The text names a file in whatever folder it is put, and nothing else: no separator, colon, wildcard or control
// character, no device's name, no blank at either end, no point at the end, no "..", at most 128 characters. Names that
// mean something in the folder of staged files are no such names either: that of the manifest and any with a tilde.
bool IsPlainFileName(TextView name);

}  // namespace tb
