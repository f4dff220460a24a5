#include "refdata/mFileInfo.h"

#include <array>

#include "base/errors.h"

namespace tb {

namespace {

struct Item {
    const char* Name;
    Text FileInfo::*Member;
};

constexpr std::array Items{Item{"CompanyName", &FileInfo::CompanyName},
                           Item{"FileDescription", &FileInfo::FileDescription},
                           Item{"FileVersion", &FileInfo::FileVersion},
                           Item{"InternalName", &FileInfo::InternalName},
                           Item{"LegalCopyright", &FileInfo::LegalCopyright},
                           Item{"OriginalFileName", &FileInfo::OriginalFileName},
                           Item{"ProductName", &FileInfo::ProductName},
                           Item{"ProductVersion", &FileInfo::ProductVersion},
                           Item{"Comments", &FileInfo::Comments},
                           Item{"LegalTrademarks", &FileInfo::LegalTrademarks},
                           Item{"PrivateBuild", &FileInfo::PrivateBuild},
                           Item{"SpecialBuild", &FileInfo::SpecialBuild}};

}  // namespace

bool GetFileInfo(Files& files, FileVersions& versions, const std::filesystem::path& Path, FileInfo& Info) {
    Info = {};
    GetFileDates(files, Path, Info.CreatedDate, Info.AccessedDate, Info.ModifiedDate);
    std::vector<Text> names;
    names.reserve(Items.size());
    for (const Item& item : Items) names.emplace_back(item.Name);
    const std::optional<std::vector<Text>> strings = versions.Strings(Path, names);
    if (!strings) return false;
    for (size_t index = 0; index < Items.size(); ++index) Info.*Items[index].Member = At(*strings, index);
    return true;
}

void GetFileDates(Files& files, const std::filesystem::path& Path, Date& Created, Date& Accessed, Date& Modified) {
    const FileTimes times = files.Times(Path);
    Created = times.Created;
    Accessed = times.Accessed;
    Modified = times.Modified;
}

void SetFileDates(Files& files, const std::filesystem::path& Path, const Date& Created, const Date& Accessed,
                  const Date& Modified, bool Local) {
    const FileAttributes attributes = files.Attributes(Path);
    files.ClearAttributes(Path);
    try {
        files.SetTimes(Path, {Created, Modified, Accessed}, Local);
    } catch (...) {
        Trap([&] { files.SetAttributes(Path, attributes); },
             [](const RuntimeError&) { /* the first failure counts */ });
        throw;
    }
    files.SetAttributes(Path, attributes);
}

}  // namespace tb
