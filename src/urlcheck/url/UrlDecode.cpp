#include "urlcheck/url/UrlDecode.h"

namespace tb {

namespace {

// The value of a hexadecimal digit, or -1.
int HexValue(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

}  // namespace

Text UrlDecode(TextView text) {
    if (text.find('%') == TextView::npos && text.find('+') == TextView::npos) return Text(text);
    Text result;
    result.reserve(text.size());
    for (size_t index = 0; index < text.size(); ++index) {
        const char character = text[index];
        if (character == '+') {
            result += ' ';
            continue;
        }
        if (character == '%' && text.size() - index > 2) {
            const int high = HexValue(text[index + 1]);
            const int low = HexValue(text[index + 2]);
            if (high >= 0 && low >= 0) {
                result += static_cast<char>(high * 16 + low);
                index += 2;
                continue;
            }
        }
        result += character;
    }
    return result;
}

}  // namespace tb
