#include "ui/skin/ContrastColors.h"

namespace tb {

namespace {

struct Standing {
    const char* Name;
    Color Instead;
};

// Of the cascade, in lower case.
constexpr Standing Named[] = {{"captionactiveforecolor", SystemColors::ActiveCaptionText},
                              {"captioninactiveforecolor", SystemColors::InactiveCaptionText},
                              {"captionbackcolor", SystemColors::ActiveCaption},
                              {"captionlinecolor1", SystemColors::WindowFrame},
                              {"captionlinecolor2", SystemColors::WindowFrame},
                              {"captiontopcolor1", SystemColors::WindowFrame},
                              {"captiontopcolor2", SystemColors::ButtonFace},
                              {"captiontopcolor3", SystemColors::ButtonFace},
                              {"border1", SystemColors::WindowFrame},
                              {"border2", SystemColors::ButtonFace},
                              // Those of a menu.
                              {"body", SystemColors::ButtonFace},
                              {"selected", SystemColors::Highlight},
                              {"selectedtext", SystemColors::HighlightText},
                              {"generaltext", SystemColors::ButtonText},
                              {"table1bg", SystemColors::ButtonFace},
                              {"table2bg", SystemColors::ButtonFace},
                              {"headingbg", SystemColors::ButtonFace},
                              {"headingtext", SystemColors::ButtonText},
                              {"menubg", SystemColors::ButtonFace},
                              {"menutext", SystemColors::ButtonText}};

bool Holds(TextView name, TextView piece) { return name.find(piece) != TextView::npos; }

}  // namespace

std::optional<Color> ContrastColor(TextView name) {
    const Text key = LowerCase(name);
    for (const Standing& one : Named) {
        if (key == one.Name) return one.Instead;
    }
    return ContrastColorOfProperty(key);
}

std::optional<Color> ContrastColorOfProperty(TextView name) {
    const Text key = LowerCase(name);
    if (!TextView(key).ends_with("color")) return std::nullopt;
    return Holds(key, "back") || Holds(key, "fill") ? SystemColors::ButtonFace : SystemColors::ButtonText;
}

}  // namespace tb
