#include "refdata/manifest/SignedManifest.h"

#include <algorithm>
#include <vector>

#include "base/errors.h"
#include "sitedb/codec/Base64.h"

namespace tb {

namespace {

// Names the purpose and the form, so that no signature of anything else can be taken for one of these.
constexpr const char* FirstLine = "trawlbeam-update 1\n";

constexpr TextView Digits = "0123456789abcdef";
constexpr size_t ReadingPiece = 65536;

}  // namespace

bool IsFileHash(TextView text) {
    return text.size() == 2 * Sha256::Size && text.find_first_not_of(Digits) == TextView::npos;
}

Text FileHash(TextView sha256) {
    Text text;
    for (const char c : sha256) {
        const auto byte = static_cast<unsigned char>(c);
        text += Digits[byte >> 4];
        text += Digits[byte & 15];
    }
    return text;
}

Text HashOfFile(Files& files, Signatures& signatures, const std::filesystem::path& path) {
    const std::unique_ptr<FileReader> file = files.OpenForReading(path);
    const std::unique_ptr<Sha256> hash = signatures.MakeSha256();
    std::vector<char> piece(ReadingPiece);
    while (const size_t read = file->Read(piece.data(), piece.size())) hash->Append({piece.data(), read});
    return FileHash(hash->Finish());
}

Text SignedText(const Element& manifest) {
    Text text = FirstLine + std::to_string(ManifestNumber(manifest)) + "\n";
    for (const ElementPtr& child : manifest) {
        if (!TakesPart(*child)) continue;
        const UpdateFile file = ReadFileElement(*child, {});
        // A name with a tab or a line end could pass for more than a name.
        if (!IsPlainFileName(file.FILE) || !IsFileHash(file.SHA256)) throw Error(ErrorNumber::TypeMismatch);
        text += file.FILE + "\t" + std::to_string(file.SIZE) + "\t" + file.SHA256 + "\n";
    }
    return text;
}

Text P256Text(TextView bytes) { return Base64Encode(bytes) + "\n"; }

Text ReadP256Text(TextView text) {
    Text bytes = Base64Decode(Trim(text));
    // Decoding takes any text.
    const bool isSame = bytes.size() == Signatures::P256Size && Base64Encode(bytes) == Trim(text);
    return isSame ? bytes : Text();
}

}  // namespace tb
