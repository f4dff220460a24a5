#include "sitedb/codec/Encryption.h"

#include <algorithm>

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/Base64.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {

namespace {

constexpr char CheckEnd = 'G';

Text CheckOf(TextView payload) { return ToHex(static_cast<std::uint32_t>(cCRC32().GetStringCrc32(payload, 0))); }

}  // namespace

Text XorWithScrambleKey(TextView data, TextView key, std::int16_t offset) {
    if (data.empty() || offset < 0) throw Error(ErrorNumber::Subscript);
    Text result(data);
    size_t keyPosition = static_cast<size_t>(offset) % key.size();
    for (size_t done = 0; done < result.size();) {
        const size_t run = std::min(key.size() - keyPosition, result.size() - done);
        for (size_t index = 0; index < run; ++index) {
            result[done + index] = static_cast<char>(result[done + index] ^ key[keyPosition + index]);
        }
        done += run;
        keyPosition = 0;
    }
    return result;
}

Text ScrambleString(TextView text, std::int16_t offset) { return XorWithScrambleKey(text, GetScrambleKey(), offset); }
Text UnscrambleString(TextView text, std::int16_t offset) { return ScrambleString(text, offset); }

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
