#include "sitedb/codec/UrlEncode.h"

#include <cstdint>

#include "base/numbers.h"
#include "sitedb/codec/StringBuilder.h"

namespace tb {

namespace {

bool IsKept(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

}  // namespace

Text UrlEncode(TextView text) {
    StringBuilder result;
    for (size_t start = 0; start < text.size();) {
        size_t end = start;
        while (end < text.size() && IsKept(text[end])) ++end;
        if (end > start) {
            result.Append(Text(text.substr(start, end - start)));
        } else {
            result.Append(text[end] == ' ' ? "+" : "%" + ToHex(static_cast<std::uint8_t>(text[end]), 2));
            ++end;
        }
        start = end;
    }
    return result.ToString();
}

}  // namespace tb
