#include "service/mail/MailTexts.h"

#include <cctype>

#include "base/bytes.h"
#include "sitedb/codec/Base64.h"

namespace tb {

namespace {

constexpr int MostLevels = 10;

TextView WithoutReturn(TextView line) { return line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0)); }

// Takes the first line and its end off `text`.
TextView TakeLine(TextView& text) {
    const size_t end = text.find('\n');
    const TextView line = text.substr(0, end);
    text.remove_prefix(end == TextView::npos ? text.size() : end + 1);
    return WithoutReturn(line);
}

// The value of the first header of that name (in lower case), with the lines that continue it; empty when there is
// none.
Text HeaderValue(TextView headers, TextView name) {
    Text value;
    bool isFound = false;
    while (!headers.empty()) {
        const TextView line = TakeLine(headers);
        const bool continues = line.starts_with(' ') || line.starts_with('\t');
        if (isFound && !continues) break;
        const size_t colon = line.find(':');
        if (isFound) {
            value += line;
        } else if (!continues && colon != TextView::npos && LowerCase(line.substr(0, colon)) == name) {
            isFound = true;
            value = line.substr(colon + 1);
        }
    }
    return Text(Trim(value));
}

Text BoundaryOf(TextView contentType) {
    const Text name = "boundary=";
    const size_t start = LowerCase(contentType).find(name);
    if (start == Text::npos) return {};
    const TextView value = contentType.substr(start + name.size());
    return Text(value.starts_with('"') ? value.substr(1, value.find('"', 1) - 1)
                                       : value.substr(0, value.find_first_of("; \t")));
}

// The text itself when most of its "=" are not escapes, as in HTML that was decoded before.
Text WithoutQuotedPrintable(TextView text) {
    Text decoded;
    size_t escapes = 0;
    size_t others = 0;
    for (size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '=') {
            decoded += text[index];
            continue;
        }
        const TextView rest = text.substr(index + 1);
        const size_t lineEnd = rest.starts_with("\r\n") ? 2 : (rest.starts_with('\n') ? 1 : 0);
        const auto byte = HexByte(rest);
        if (byte) decoded += static_cast<char>(*byte);
        if (!byte && lineEnd == 0) decoded += '=';
        index += byte ? 2 : lineEnd;
        ++(byte || lineEnd > 0 ? escapes : others);
    }
    return escapes >= others ? decoded : Text(text);
}

bool IsBase64Line(TextView line) {
    for (const char character : line) {
        const bool fits = std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '+' ||
                          character == '/' || character == '=';
        if (!fits) return false;
    }
    return true;
}

// Up to the first line that cannot be Base64; from there on the text stays.
Text WithoutBase64(TextView text) {
    Text characters;
    while (!text.empty()) {
        TextView rest = text;
        const TextView line = Trim(TakeLine(rest));
        if (!IsBase64Line(line)) break;
        characters += line;
        text = rest;
    }
    return Base64Decode(characters) + Text(text);
}

Text Decoded(TextView headers, TextView body) {
    const Text encoding = LowerCase(HeaderValue(headers, "content-transfer-encoding"));
    if (encoding == "quoted-printable") return WithoutQuotedPrintable(body);
    if (encoding == "base64") return WithoutBase64(body);
    return Text(body);
}

void Collect(TextView headers, TextView body, int level, std::vector<Text>& texts);

// A mail or part with its headers in front.
void CollectWhole(TextView whole, int level, std::vector<Text>& texts) {
    TextView rest = whole;
    while (!rest.empty()) {
        const size_t lineStart = whole.size() - rest.size();
        if (TakeLine(rest).empty()) return Collect(whole.substr(0, lineStart), rest, level, texts);
    }
    Collect({}, whole, level, texts);
}

// False when no line divides the body.
bool CollectParts(TextView body, const Text& boundary, int level, std::vector<Text>& texts) {
    const Text divider = "--" + boundary;
    bool isDivided = false;
    size_t partStart = TextView::npos;
    for (TextView rest = body; !rest.empty();) {
        const size_t lineStart = body.size() - rest.size();
        const TextView line = TakeLine(rest);
        if (!line.starts_with(divider)) continue;
        if (partStart != TextView::npos) CollectWhole(body.substr(partStart, lineStart - partStart), level, texts);
        isDivided = true;
        const bool isLast = line.substr(divider.size()).starts_with("--");
        partStart = isLast ? TextView::npos : body.size() - rest.size();
    }
    if (partStart != TextView::npos) CollectWhole(body.substr(partStart), level, texts);
    return isDivided;
}

void Collect(TextView headers, TextView body, int level, std::vector<Text>& texts) {
    const Text contentType = HeaderValue(headers, "content-type");
    const Text type = LowerCase(contentType);
    const bool isMultipart = type.starts_with("multipart/");
    if (level < MostLevels && isMultipart) {
        const Text boundary = BoundaryOf(contentType);
        if (!boundary.empty() && CollectParts(body, boundary, level + 1, texts)) return;
    }
    if (level < MostLevels && type.starts_with("message/rfc822")) return CollectWhole(body, level + 1, texts);
    const bool isReadable = level == 0 || isMultipart || type.empty() || type.starts_with("text");
    if (isReadable) texts.push_back(Decoded(headers, body));
}

}  // namespace

std::vector<Text> MailTexts(TextView headers, TextView body) {
    std::vector<Text> texts;
    Collect(headers, body, 0, texts);
    return texts;
}

}  // namespace tb
