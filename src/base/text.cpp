#include "base/text.h"

#include "base/codepage.h"
#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

Text Folded(TextView text, const std::array<char, 256>& table) {
    Text result(text);
    for (char& character : result) character = table[static_cast<std::uint8_t>(character)];
    return result;
}

template <typename Part>
std::vector<Part> SplitInto(TextView text, char separator) {
    std::vector<Part> parts;
    if (text.empty()) return parts;
    // Most texts have few.
    parts.reserve(4);
    for (size_t start = 0;;) {
        const size_t end = text.find(separator, start);
        if (end == TextView::npos) {
            parts.emplace_back(text.substr(start));
            return parts;
        }
        parts.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
}

}  // namespace

std::vector<Text> Split(TextView text, char separator) { return SplitInto<Text>(text, separator); }

void Split(TextView text, char separator, std::vector<Text>& parts) {
    size_t count = 0;
    for (bool more = !text.empty(); more; ++count) {
        const size_t end = text.find(separator);
        more = end != TextView::npos;
        if (count == parts.size()) parts.emplace_back();
        parts[count] = text.substr(0, end);
        if (more) text.remove_prefix(end + 1);
    }
    parts.resize(count);
}

std::vector<TextView> SplitViews(TextView text, char separator) { return SplitInto<TextView>(text, separator); }

Text Join(const std::vector<Text>& parts, TextView separator) {
    Text result;
    for (size_t index = 0; index < parts.size(); ++index) {
        if (index > 0) result += separator;
        result += parts[index];
    }
    return result;
}

char LowerCase(char character) { return CodePage::InUse().Lower[static_cast<std::uint8_t>(character)]; }
char UpperCase(char character) { return CodePage::InUse().Upper[static_cast<std::uint8_t>(character)]; }
Text LowerCase(TextView text) { return Folded(text, CodePage::InUse().Lower); }
Text UpperCase(TextView text) { return Folded(text, CodePage::InUse().Upper); }

TextView Left(TextView text, size_t count) { return text.substr(0, count); }

TextView Mid(TextView text, long position, long length) {
    if (position < 1 || length < 0) throw Error(ErrorNumber::InvalidCall);
    const auto start = static_cast<size_t>(position) - 1;
    return start >= text.size() ? TextView() : text.substr(start, static_cast<size_t>(length));
}

TextView Trim(TextView text) {
    constexpr TextView blanks = " \t\r\n";
    const size_t first = text.find_first_not_of(blanks);
    if (first == TextView::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

Text RemoveAll(TextView text, TextView pattern) { return ReplaceAll(text, pattern, {}); }

Text ReplaceAll(TextView text, TextView pattern, TextView value) {
    if (pattern.empty()) return Text(text);
    Text result;
    size_t start = 0;
    for (size_t found; (found = text.find(pattern, start)) != TextView::npos; start = found + pattern.size()) {
        result += text.substr(start, found - start);
        result += value;
    }
    return result += text.substr(start);
}

TextView WithoutTrailingSlashes(TextView text) {
    while (text.size() > 1 && text.back() == '/') text.remove_suffix(1);
    return text;
}

namespace {

bool IsPrintable(char character) { return character >= 0x20 && character < 0x7F; }

Text Hexadecimal(char character) { return "\\x" + ToHex(static_cast<std::uint8_t>(character), 2); }

}  // namespace

Text Quoted(TextView text, size_t limit) {
    Text result;
    for (const char character : Left(text, limit)) {
        if (IsPrintable(character) && character != '\\') {
            result += character;
        } else {
            result += Hexadecimal(character);
        }
    }
    return text.size() > limit ? result + "..." : result;
}

Text Visible(TextView text) {
    Text result;
    for (size_t index = 0; index < text.size(); ++index) {
        const char character = text[index];
        if (IsPrintable(character) || character == '\n' || character == '\t') {
            result += character;
        } else if (character != '\r' || text.substr(index + 1, 1) != "\n") {
            result += Hexadecimal(character);
        }
    }
    return result;
}

}  // namespace tb
