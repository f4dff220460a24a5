#include "components/tbXML/XmlText.h"

#include <array>
#include <utility>

#include "base/bytes.h"

namespace tb {

namespace {

constexpr std::array<std::pair<TextView, char>, 5> Named{
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

// The longest text between "&" and ";" that is looked at, so that many lone "&" cost no more than other characters.
constexpr size_t LongestReference = 10;

// What stands between "&#" and ";" as a byte; False when it is no number up to 255.
bool ReadNumber(TextView digits, char& character) {
    const bool hexadecimal = !digits.empty() && digits.front() == 'x';
    if (hexadecimal) digits.remove_prefix(1);
    if (digits.empty()) return false;
    const int base = hexadecimal ? 16 : 10;
    int number = 0;
    for (const char digit : digits) {
        const int value = HexDigit(digit);
        if (value < 0 || value >= base) return false;
        number = number * base + value;
        if (number > 0xFF) return false;
    }
    character = static_cast<char>(number);
    return true;
}

bool ReadReference(TextView name, char& character) {
    if (!name.empty() && name.front() == '#') return ReadNumber(name.substr(1), character);
    for (const auto& [known, meaning] : Named) {
        if (name == known) {
            character = meaning;
            return true;
        }
    }
    return false;
}

void AppendEscaped(Text& target, TextView text, TextView claimed) {
    size_t start = 0;
    for (size_t found; (found = text.find_first_of(claimed, start)) != TextView::npos; start = found + 1) {
        target += text.substr(start, found - start);
        target += '&';
        for (const auto& [name, character] : Named) {
            if (character == text[found]) target += name;
        }
        target += ';';
    }
    target += text.substr(start);
}

}  // namespace

void AppendEscapedText(Text& target, TextView text) { AppendEscaped(target, text, "&<>"); }

void AppendEscapedValue(Text& target, TextView value) { AppendEscaped(target, value, "&<>'"); }

XmlOutcome TryEscapeValue(Text& text, TextView value) noexcept {
    return OutcomeOf([&] { AppendEscapedValue(text, value); });
}

void AppendUnescaped(Text& target, TextView text) {
    size_t start = 0;
    for (size_t found; (found = text.find('&', start)) != TextView::npos;) {
        target += text.substr(start, found - start);
        const TextView behind = text.substr(found + 1, LongestReference + 1);
        const size_t end = behind.find(';');
        char character = '&';
        const bool reference = end != TextView::npos && ReadReference(behind.substr(0, end), character);
        target += character;
        start = found + 1 + (reference ? end + 1 : 0);
    }
    target += text.substr(start);
}

}  // namespace tb
