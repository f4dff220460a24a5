#include "sitedb/codec/Encryption.h"

#include <algorithm>
#include <cstring>

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/Base64.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {

namespace {

constexpr char CheckEnd = 'G';

Text CheckOf(TextView payload) { return ToHex(static_cast<std::uint32_t>(cCRC32().GetStringCrc32(payload, 0))); }

// The key again and again: long enough for the longest text with its own length as offset, so that the key runs through
// it without a break.
const Text& RepeatedKey() {
    static const Text repeated = [] {
        constexpr size_t enough = (size_t{2} << 15) + sizeof(std::uint64_t);
        Text keys;
        while (keys.size() < enough) keys += GetScrambleKey();
        return keys;
    }();
    return repeated;
}

// `data` XOR `key`, both of `size` bytes; `target` may be `data`.
void XorRun(const char* data, const char* key, size_t size, char* target) {
    constexpr size_t wordSize = sizeof(std::uint64_t);
    const auto wordAt = [&](size_t offset) {
        std::uint64_t word = 0;
        std::uint64_t keyWord = 0;
        std::memcpy(&word, data + offset, wordSize);
        std::memcpy(&keyWord, key + offset, wordSize);
        return word ^ keyWord;
    };
    if (size < wordSize) {
        for (size_t offset = 0; offset < size; ++offset) target[offset] = static_cast<char>(data[offset] ^ key[offset]);
        return;
    }
    // The last word may overlap the one before; it is read before `target` is written, which may be `data`.
    const std::uint64_t last = wordAt(size - wordSize);
    for (size_t offset = 0; offset + wordSize <= size; offset += wordSize) {
        const std::uint64_t word = wordAt(offset);
        std::memcpy(target + offset, &word, wordSize);
    }
    std::memcpy(target + size - wordSize, &last, wordSize);
}

// `data` XOR the endless repetition of `key` from `position` on.
void XorInto(TextView data, TextView key, size_t position, char* target) {
    for (size_t done = 0, start = position % key.size(); done < data.size(); start = 0) {
        const size_t run = std::min(key.size() - start, data.size() - done);
        XorRun(data.data() + done, key.data() + start, run, target + done);
        done += run;
    }
}

}  // namespace

Text XorWithScrambleKey(TextView data, TextView key, std::int16_t offset) {
    if (data.empty() || offset < 0) throw Error(ErrorNumber::Subscript);
    Text result(data.size(), '\0');
    XorInto(data, key, static_cast<size_t>(offset), result.data());
    return result;
}

Text ScrambleString(TextView text, std::int16_t offset) { return XorWithScrambleKey(text, RepeatedKey(), offset); }
Text UnscrambleString(TextView text, std::int16_t offset) { return ScrambleString(text, offset); }

void ScrambleByLength(TextView text, char* target) {
    if (text.empty()) throw Error(ErrorNumber::Subscript);
    NarrowToInt16(static_cast<std::int64_t>(text.size()));
    XorRun(text.data(), RepeatedKey().data() + text.size(), text.size(), target);
}

const char* KeyFrom(size_t length) { return RepeatedKey().data() + length; }

Text ScrambleByLength(TextView text) {
    return ScrambleString(text, NarrowToInt16(static_cast<std::int64_t>(text.size())));
}
Text UnscrambleByLength(TextView text) { return ScrambleByLength(text); }

Text ScrambleToBase64(TextView text, std::int16_t offset) { return Base64Encode(ScrambleString(text, offset)); }
Text UnscrambleFromBase64(TextView text, std::int16_t offset) { return UnscrambleString(Base64Decode(text), offset); }

Text EncryptStringChk(TextView plain) {
    const Text payload = ScrambleString(plain, 0);
    return CheckOf(payload) + CheckEnd + payload;
}

bool ChkEncryptString(TextView data, Text& plain, LogSink& log) noexcept {
    return TrapOr(
        false,
        [&] {
            const size_t end = data.find(CheckEnd);
            if (end == TextView::npos) throw Error(ErrorNumber::InvalidCall);
            const TextView payload = data.substr(end + 1);
            if (CheckOf(payload) != data.substr(0, end)) return false;
            plain = UnscrambleString(payload, 0);
            return true;
        },
        [&](const RuntimeError& error) { log.WriteLog("Error ChkEncryptString: " + error.Line(), LogLevel::Always); });
}

}  // namespace tb
