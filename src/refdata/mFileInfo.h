// Dates and version resources of files. What fails raises the errors of platform/Files.h.
#pragma once

#include <filesystem>

#include "platform/FileVersions.h"
#include "platform/Files.h"

namespace tb {

struct FileInfo {
    Text CompanyName;
    Text FileDescription;
    Text FileVersion;
    Text InternalName;
    Text LegalCopyright;
    Text OriginalFileName;
    Text ProductName;
    Text ProductVersion;
    Text Comments;
    Text LegalTrademarks;
    Text PrivateBuild;
    Text SpecialBuild;
    // Local times.
    Date CreatedDate;
    Date ModifiedDate;
    Date AccessedDate;
};

// The dates, and the strings of the version resource, those that it lacks empty. False when the file has no version
// resource: all strings are empty then.
bool GetFileInfo(Files& files, FileVersions& versions, const std::filesystem::path& Path, FileInfo& Info);

// Local times.
void GetFileDates(Files& files, const std::filesystem::path& Path, Date& Created, Date& Accessed, Date& Modified);

// Gives a file these dates, local ones or, without `Local`, universal ones, a read-only file too. Its attributes are
// the same afterwards, also when setting the dates fails.
void SetFileDates(Files& files, const std::filesystem::path& Path, const Date& Created, const Date& Accessed,
                  const Date& Modified, bool Local);

}  // namespace tb
