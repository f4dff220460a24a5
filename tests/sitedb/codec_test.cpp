#include <gtest/gtest.h>

#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "sitedb/codec/Base64.h"
#include "sitedb/codec/CRC16.h"
#include "sitedb/codec/Encryption.h"
#include "sitedb/codec/StringBuilder.h"
#include "sitedb/codec/UrlEncode.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {
namespace {

TEST(Checksums, CheckValuesAndSeeds) {
    const cCRC32 crc;
    EXPECT_EQ(crc.GetStringCrc32("123456789", 0), -873187034);
    EXPECT_EQ(crc.GetStringCrc32("6789", crc.GetStringCrc32("12345", 0)), -873187034);
    // However it is cut, at each length of what goes in steps of many bytes and of what is left.
    const Text once = "The quick brown fox jumps over the lazy dog, \x80\xFF again and again.";
    const Text text = once + once + once;
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        std::int32_t bytewise = 0;
        for (const char character : text.substr(0, cut)) bytewise = crc.GetStringCrc32({&character, 1}, bytewise);
        EXPECT_EQ(crc.GetStringCrc32(text.substr(0, cut), 0), bytewise);
    }
    EXPECT_EQ(CRC16().GetStringCRC16("123456789"), -17603);
}

TEST(Scrambling, IsTheXorOfTheRepeatedKeyFromTheOffset) {
    EXPECT_EQ(Raised([] { XorWithScrambleKey("", "xyz", 0); }), 9);
    const Text& key = GetScrambleKey();
    Text longText;
    for (int index = 0; index < 700; ++index) longText += static_cast<char>(index);
    for (const std::int16_t offset : std::initializer_list<std::int16_t>{0, 1, 69, 70, 71, 32767}) {
        const Text scrambled = ScrambleString(longText, offset);
        for (size_t index = 0; index < longText.size(); ++index) {
            ASSERT_EQ(scrambled[index], longText[index] ^ key[(static_cast<size_t>(offset) + index) % key.size()]);
        }
    }
    EXPECT_EQ(Raised([] { ScrambleByLength(Text(32768, 'x')); }), 6);
    EXPECT_EQ(UnscrambleByLength(ScrambleByLength(Text(32767, 'x'))), Text(32767, 'x'));
    EXPECT_EQ(UnscrambleFromBase64(ScrambleToBase64("1000-77", 5), 5), "1000-77");
}

TEST(Frames, OpenWhatWasFramedAndNothingElse) {
    RecordedLog log;
    Text plain = "before";
    // Checksums with fewer than eight digits, payloads that hold the letter "G".
    for (int number = 0; number < 3000; ++number) {
        const Text text = "p" + std::to_string(number);
        ASSERT_TRUE(ChkEncryptString(EncryptStringChk(text), plain, log)) << text;
        ASSERT_EQ(plain, text);
    }
    const Text frame = EncryptStringChk("hello");
    const size_t end = frame.find('G');
    const Text lower = LowerCase(frame.substr(0, end)) + frame.substr(end);
    ASSERT_NE(lower, frame);
    Text damaged = frame;
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    plain = "before";
    for (const Text& bad :
         {lower, damaged, "0" + frame, frame.substr(1), frame + "x", Text(), Text("12345"), Text("0G")}) {
        EXPECT_FALSE(ChkEncryptString(bad, plain, log)) << bad;
    }
    EXPECT_EQ(plain, "before");
    const Text noFrame = "0 Error ChkEncryptString: 5 Invalid procedure call or argument";
    EXPECT_EQ(log.Take(), (std::vector<Text>{noFrame, noFrame, "0 Error ChkEncryptString: 9 Subscript out of range"}));
}

TEST(Encodings, OfBase64AndOfUrls) {
    EXPECT_EQ(Base64Encode("\xFB\xEF"), "++8=");
    EXPECT_EQ(TextToBase64("fooba"), "Zm9vYmE=");
    Text bytes;
    for (int index = 0; index < 300; ++index) {
        EXPECT_EQ(Base64Decode(Base64Encode(bytes)), bytes);
        bytes += static_cast<char>(index * 7);
    }
    // Wrong characters are not noticed; an incomplete group is passed over.
    EXPECT_EQ(Base64Decode("QQ==x").size(), 1U);
    EXPECT_EQ(Base64Decode("\r\nQQ").size(), 3U);
    EXPECT_EQ(UrlEncode("azAZ09 /-_.~\xE9\r\n" + Text(1, '\0')), "azAZ09+%2F%2D%5F%2E%7E%E9%0D%0A%00");
}

TEST(StringBuilder, GrowsAndKeepsItsOrder) {
    StringBuilder builder;
    Text all;
    for (int piece = 0; piece < 10000; ++piece) {
        builder.Append(std::to_string(piece));
        all += std::to_string(piece);
    }
    EXPECT_EQ(builder.ToString(), all);
}

}  // namespace
}  // namespace tb
