#include "refdata/manifest/UpdateManifest.h"

#include <algorithm>
#include <array>

#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

constexpr size_t LongestName = 128;
// More digits are no number of 31 bits.
constexpr size_t MostDigits = 10;

std::int32_t DigitsToInt32(TextView text) {
    const bool digits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (text.empty() || !digits) throw Error(ErrorNumber::TypeMismatch);
    if (text.size() > MostDigits) throw Error(ErrorNumber::Overflow);
    std::int64_t number = 0;
    for (const char digit : text) number = number * 10 + (digit - '0');
    return NarrowToInt32(number);
}

Date ReadDate(const Text& text, const Date& present) { return text.empty() ? present : ParseDate(text); }

// `stem` in upper case. The system finds a device by the name before the first point, in every folder.
bool IsDevice(TextView stem) {
    static constexpr std::array<TextView, 7> Devices{"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};
    if (std::find(Devices.begin(), Devices.end(), stem) != Devices.end()) return true;
    // The raised 1, 2 and 3 count as digits.
    return stem.size() == 4 && (Left(stem, 3) == "COM" || Left(stem, 3) == "LPT") &&
           TextView("0123456789\xB9\xB2\xB3").find(stem[3]) != TextView::npos;
}

}  // namespace

std::int32_t ManifestNumber(const Element& manifest) { return DigitsToInt32(manifest.FindAttributeValue("VERSION")); }

bool TakesPart(const Element& child) { return UpperCase(child.FindAttributeValue("DOWNLOAD")) == "Y"; }

UpdateFile ReadFileElement(const Element& child, const Date& present) {
    return {child.FindAttributeValue("FILE"),
            DigitsToInt32(child.FindAttributeValue("SIZE")),
            child.FindAttributeValue("VERSION"),
            ReadDate(child.FindAttributeValue("CreatedDate"), present),
            ReadDate(child.FindAttributeValue("ModifiedDate"), present),
            ReadDate(child.FindAttributeValue("AccessedDate"), present),
            LowerCase(child.FindAttributeValue("SHA256"))};
}

std::int64_t TotalDownloadSize(const Element& manifest) {
    std::int64_t total = 0;
    for (const ElementPtr& child : manifest) {
        if (TakesPart(*child)) total += DigitsToInt32(child->FindAttributeValue("SIZE"));
    }
    return total;
}

bool IsPlainFileName(TextView name) {
    if (name.empty() || name.size() > LongestName || Trim(name) != name || name.back() == '.') return false;
    // A tilde makes the short form of another name, and marks files that are not finished.
    const auto refused = [](char c) {
        return static_cast<unsigned char>(c) < ' ' || TextView("<>:\"/\\|?*~").find(c) != TextView::npos;
    };
    if (std::any_of(name.begin(), name.end(), refused) || name.find("..") != TextView::npos) return false;
    const Text folded = UpperCase(name);
    return !IsDevice(Trim(Left(folded, folded.find('.')))) && folded != UpperCase(ManifestName);
}

}  // namespace tb
