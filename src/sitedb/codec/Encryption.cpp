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

// The key again and again: a long run of it goes by words, without a break at each end of the key.
const Text& RepeatedKey() {
    static const Text repeated = [] {
        constexpr size_t enough = 4096;
        Text keys;
        while (keys.size() < enough) keys += GetScrambleKey();
        return keys;
    }();
    return repeated;
}

// `data` XOR `key`, both of `size` bytes; `target` may be `data`.
void XorRun(const char* data, const char* key, size_t size, char* target) {
    constexpr size_t wordSize = sizeof(std::uint64_t);
    size_t done = 0;
    for (; done + wordSize <= size; done += wordSize) {
        std::uint64_t word = 0;
        std::uint64_t keyWord = 0;
        std::memcpy(&word, data + done, wordSize);
        std::memcpy(&keyWord, key + done, wordSize);
        word ^= keyWord;
        std::memcpy(target + done, &word, wordSize);
    }
    for (; done < size; ++done) target[done] = static_cast<char>(data[done] ^ key[done]);
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
    XorInto(text, RepeatedKey(), text.size(), target);
}

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
    bool intact = false;
    Trap(
        [&] {
            const size_t end = data.find(CheckEnd);
            if (end == TextView::npos) throw Error(ErrorNumber::InvalidCall);
            const TextView payload = data.substr(end + 1);
            if (CheckOf(payload) != data.substr(0, end)) return;
            plain = UnscrambleString(payload, 0);
            intact = true;
        },
        [&](const RuntimeError& error) { log.WriteLog("Error ChkEncryptString: " + error.Line(), LogLevel::Always); });
    return intact;
}

}  // namespace tb
