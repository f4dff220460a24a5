#include "sitedb/codec/Base64.h"

#include <array>

#include "base/bytes.h"

namespace tb {

namespace {

constexpr TextView Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t NoCharacter = 64;

constexpr std::array<std::uint8_t, 256> MakeValues() {
    std::array<std::uint8_t, 256> values{};
    for (auto& value : values) value = NoCharacter;
    for (std::uint8_t index = 0; index < 64; ++index) values[static_cast<std::uint8_t>(Alphabet[index])] = index;
    return values;
}

constexpr std::array<std::uint8_t, 256> Values = MakeValues();

std::uint32_t ByteAt(TextView bytes, size_t index) {
    return index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : 0U;
}

}  // namespace

Text Base64Encode(TextView bytes) {
    Text result;
    result.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t start = 0; start < bytes.size(); start += 3) {
        const std::uint32_t group =
            ByteAt(bytes, start) << 16 | ByteAt(bytes, start + 1) << 8 | ByteAt(bytes, start + 2);
        const size_t left = bytes.size() - start;
        result += Alphabet[group >> 18];
        result += Alphabet[group >> 12 & 63];
        result += left > 1 ? Alphabet[group >> 6 & 63] : '=';
        result += left > 2 ? Alphabet[group & 63] : '=';
    }
    return result;
}

Text Base64Decode(TextView characters) {
    Text result;
    const size_t groups = characters.size() / 4;
    result.reserve(groups * 3);
    for (size_t start = 0; start < groups * 4; start += 4) {
        std::uint32_t group = 0;
        for (size_t index = start; index < start + 4; ++index) {
            group = group << 6 | (Values[static_cast<std::uint8_t>(characters[index])] & 63U);
        }
        result += static_cast<char>(group >> 16);
        result += static_cast<char>(group >> 8);
        result += static_cast<char>(group);
    }
    if (groups > 0) {
        const TextView last = characters.substr(groups * 4 - 2, 2);
        if (last[0] == '=') {
            result.resize(result.size() - 2);
        } else if (last[1] == '=') {
            result.resize(result.size() - 1);
        }
    }
    return result;
}

Text LongToBase64(std::int32_t value) {
    char bytes[4];
    PutLittleEndian(static_cast<std::uint32_t>(value), bytes, sizeof bytes);
    return Base64Encode({bytes, sizeof bytes});
}

}  // namespace tb
