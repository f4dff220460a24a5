#include "service/release/Release.h"

#include <algorithm>
#include <array>
#include <set>

#include "base/errors.h"
#include "components/tbXML/Document.h"
#include "refdata/manifest/SignedManifest.h"
#include "service/signing/OpenSslSignatures.h"

namespace tb {

namespace {

// What a client takes for a file, and for the manifest.
constexpr size_t LongestFile = 256u << 20;
constexpr size_t LongestManifest = 1u << 20;

constexpr std::array<TextView, 4> InstalledSuffixes{".exe", ".dll", ".ocx", ".chm"};

bool IsInstalled(const std::filesystem::path& name) {
    const Text suffix = LowerCase(name.extension().string());
    return std::find(InstalledSuffixes.begin(), InstalledSuffixes.end(), suffix) != InstalledSuffixes.end();
}

// Three numbers, or up to four, joined by points, within what clients compare. They ignore the fourth.
bool IsVersion(const Text& version) {
    const std::vector<TextView> parts = SplitViews(version, '.');
    const auto isNumber = [](TextView part, size_t digits) {
        return !part.empty() && part.size() <= digits && part.find_first_not_of("0123456789") == TextView::npos;
    };
    return !parts.empty() && parts.size() <= 4 && isNumber(parts.front(), 4) &&
           std::all_of(parts.begin() + 1, parts.end(), [&](TextView part) { return isNumber(part, 5); });
}

Text VersionOf(const ReleaseFile& file) {
    if (LowerCase(std::filesystem::path(file.Name).extension().string()) == ".chm") return {};
    try {
        Text version = FileVersionOf(file.Content).value_or(Text());
        if (!version.empty() && !IsVersion(version)) {
            throw InputError("its version " + Quoted(version) + " is not of the form 1.2.3");
        }
        return version;
    } catch (const RuntimeError& error) {
        throw InputError(file.Name + ": " + error.what());
    }
}

ElementPtr DescriptionOf(const ReleaseFile& file) {
    if (file.Content.size() > LongestFile) throw InputError(file.Name + ": it is too long for clients");
    auto child = std::make_shared<Element>("FILE");
    child->AddAttribute({"FILE", file.Name});
    child->AddAttribute({"SIZE", std::to_string(file.Content.size())});
    child->AddAttribute({"VERSION", VersionOf(file)});
    child->AddAttribute({"CreatedDate", FormatDateTime(file.Times.Created)});
    child->AddAttribute({"ModifiedDate", FormatDateTime(file.Times.Modified)});
    child->AddAttribute({"AccessedDate", FormatDateTime(file.Times.Accessed)});
    child->AddAttribute({"DOWNLOAD", "Y"});
    return child;
}

const ReleaseFile& Require(const std::vector<ReleaseFile>& files, const Text& name) {
    const auto found =
        std::find_if(files.begin(), files.end(), [&](const ReleaseFile& file) { return file.Name == name; });
    if (found == files.end()) throw InputError("there is no file " + Quoted(name) + ", which the manifest names");
    return *found;
}

UpdateFile ReadEntry(const Element& entry, const Text& name) {
    try {
        return ReadFileElement(entry, {});
    } catch (const RuntimeError& error) {
        throw InputError(name + ": its size or a date is none (" + error.Description + ")");
    }
}

void CheckFile(const UpdateFile& told, const ReleaseFile& file, bool isSigned) {
    if (file.Content.size() != static_cast<size_t>(told.SIZE)) {
        throw InputError(told.FILE + ": its size is not the one of the manifest");
    }
    if (told.SHA256.empty() && !isSigned) return;
    if (told.SHA256 != FileHash(Sha256Of(file.Content))) {
        throw InputError(told.FILE + ": its hash is not the one of the manifest");
    }
}

}  // namespace

Release ReadRelease(Files& files, const std::filesystem::path& folder) {
    Release release;
    if (!files.FolderExists(folder))
        throw InputError(folder.string() + ": no such folder; the one of the program's files is expected");
    std::vector<std::filesystem::path> names = files.List(folder);
    std::sort(names.begin(), names.end());
    for (const std::filesystem::path& path : names) {
        const Text name = path.string();
        if (!IsInstalled(path)) {
            release.PassedOver.push_back(name);
            continue;
        }
        const bool isAscii = std::none_of(name.begin(), name.end(), [](char c) { return (c & 0x80) != 0; });
        if (!isAscii || !IsPlainFileName(name)) {
            throw InputError(Quoted(name) + " is no name that clients take for a file");
        }
        try {
            release.Files.push_back({name, ReadWholeFile(files, folder / path), files.Times(folder / path)});
        } catch (const RuntimeError& error) {
            throw InputError((folder / path).string() + ": " + error.Description);
        }
    }
    if (release.Files.empty()) throw InputError(folder.string() + ": there is nothing to install in it");
    return release;
}

std::int32_t ReadReleaseNumber(const Text& text) {
    const bool digits = !text.empty() && text.size() <= 10 && text.find_first_not_of("0123456789") == Text::npos;
    const std::int64_t number = digits ? std::stoll(text) : 0;
    if (number <= 0 || number > INT32_MAX) {
        throw InputError(Quoted(text) + " is no whole number from 1 to 2147483647");
    }
    return static_cast<std::int32_t>(number);
}

ElementPtr MakeManifest(const std::vector<ReleaseFile>& files, std::int32_t number) {
    auto manifest = std::make_shared<Element>("UPDATES");
    manifest->AddAttribute({"VERSION", std::to_string(number)});
    for (const ReleaseFile& file : files) manifest->AddElement(DescriptionOf(file));
    return manifest;
}

Text SignManifest(Element& manifest, const std::vector<ReleaseFile>& files, const SigningKey& key) {
    for (const ElementPtr& child : manifest) {
        if (!TakesPart(*child)) continue;
        const ReleaseFile& file = Require(files, child->FindAttributeValue("FILE"));
        child->SetAttributeValue("SHA256", FileHash(Sha256Of(file.Content)));
    }
    CheckManifest(manifest, files, true);
    return P256Text(key.Sign(SignedText(manifest)));
}

void CheckManifest(const Element& manifest, const std::vector<ReleaseFile>& files, bool isSigned) {
    // The number's text is also a part of pages, so it has one form only.
    const Text number = manifest.FindAttributeValue("VERSION");
    if (std::to_string(ReadReleaseNumber(number)) != number) throw InputError("its number has leading zeros");
    if (manifest.XML().size() > LongestManifest) throw InputError("it is too long for clients");
    std::set<Text> names;
    for (const ElementPtr& child : manifest) {
        if (!TakesPart(*child)) continue;
        const Text name = child->FindAttributeValue("FILE");
        const ReleaseFile& file = Require(files, name);
        CheckFile(ReadEntry(*child, name), file, isSigned);
        if (!names.insert(LowerCase(name)).second) throw InputError(name + ": the manifest names it twice");
    }
    if (names.empty()) throw InputError("the manifest names no file");
}

ElementPtr ReadManifest(Files& files, const std::filesystem::path& path) {
    try {
        Document document;
        document.Load(files, path);
        return document.Root();
    } catch (const RuntimeError& error) {
        throw InputError(path.string() + ": " + error.Description + "; the manifest of an update is expected");
    }
}

}  // namespace tb
