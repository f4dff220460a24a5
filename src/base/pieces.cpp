#include "base/pieces.h"

namespace tb {

Text Piece(const volatile char* characters) {
    Text piece;
    for (; *characters != '\0'; ++characters) piece += *characters;
    return piece;
}

}  // namespace tb
