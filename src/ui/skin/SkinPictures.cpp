#include "ui/skin/SkinPictures.h"

#include "sitedb/codec/Base64.h"

namespace tb {

namespace {

constexpr size_t LongestText = size_t{4} << 20;

}  // namespace

Text PictureBytes(TextView text) { return text.size() > LongestText ? Text() : Base64Decode(text); }

PictureRef PictureFromByteStream(const Forms& forms, const Text& bytes) {
    return bytes.empty() ? nullptr : forms.Decode(bytes);
}

PictureRef GlobalPicture(const Forms& forms, const ElementPtr& root, TextView name) {
    const ElementPtr globals = root == nullptr ? nullptr : root->FindElementAttribute2("Name", "Globals");
    const ElementPtr picture = globals == nullptr ? nullptr : globals->FindElementAttribute2("Name", name);
    return picture == nullptr ? nullptr : PictureFromByteStream(forms, PictureBytes(picture->Body()));
}

PictureRef SkinPictures::Read(TextView text) {
    if (m_PixelsLeft <= 0) return nullptr;
    PictureRef picture = PictureFromByteStream(m_Forms, PictureBytes(text));
    if (picture != nullptr) m_PixelsLeft -= std::int64_t{picture->Size.Width} * picture->Size.Height;
    return picture;
}

}  // namespace tb
