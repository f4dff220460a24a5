// The key in its pieces. Every maker of lists and data files shares it, so changing a piece makes all existing
// snapshots, frames and stored identifiers unreadable.
#include <algorithm>

#include "base/numbers.h"
#include "base/pieces.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

[[gnu::noinline]] Text Reversed(Text text) {
    std::reverse(text.begin(), text.end());
    return text;
}

[[gnu::noinline]] Text Product(const volatile char* digits, std::int32_t factor) {
    return std::to_string(ToInt32(Piece(digits)) * factor);
}

Text BuildKey() {
    const Text first = Piece("wK4;") + Reversed(Piece("R0v)e")) + Product("7193", 57) + Piece("=nQz");
    const Text second = Reversed(Product("48611", 23)) + Piece("u&J3") + Piece("Xh2*m") + Reversed(Piece("6s]D"));
    const Text third = Piece("Yf!8") + Product("3037", 91) + Reversed(Piece("b^T5q")) + Piece("{cM9");
    return second + Reversed(first) + third + first + Reversed(second);
}

}  // namespace

const Text& GetScrambleKey() {
    static const Text key = BuildKey();
    return key;
}

}  // namespace tb
