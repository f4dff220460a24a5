#include "urlcheck/url/UrlDecode.h"

#include "base/bytes.h"

namespace tb {

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
        if (const auto byte = character == '%' ? HexByte(text.substr(index + 1)) : std::nullopt) {
            result += static_cast<char>(*byte);
            index += 2;
            continue;
        }
        result += character;
    }
    return result;
}

}  // namespace tb
