// Pictures in a skin: the Base64 of image files.
#pragma once

#include "components/tbXML/Element.h"
#include "ui/window/Forms.h"

namespace tb {

// The bytes that a text of a skin stands for. Empty for an empty text, and for one that is longer than any picture of a
// window (4 MB): decoding it would hold up who waits for an answer.
Text PictureBytes(TextView text);

// The picture of an image file; null for no bytes, without a system, and for what cannot be decoded.
PictureRef PictureFromByteStream(const Forms& forms, const Text& bytes);

// The picture that the root's element "Globals" has under this name; null when there is none, and without a root.
PictureRef GlobalPicture(const Forms& forms, const ElementPtr& root, TextView name);

// The pictures that one window gets from its skin: no more than fit on a few screens, however many there are and
// however little their files tell of it. What goes beyond is null.
class SkinPictures {
public:
    explicit SkinPictures(const Forms& forms) : m_Forms(forms) {}

    PictureRef Read(TextView text);

private:
    const Forms& m_Forms;
    std::int64_t m_PixelsLeft = std::int64_t{16} << 20;
};

}  // namespace tb
