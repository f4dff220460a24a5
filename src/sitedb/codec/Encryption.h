// Scrambling: a repeating-key XOR that keeps lists and data files from lying in plain text. It is no cipher.
// Frame format: docs/formats/frame.md.
#pragma once

#include <cstdint>

#include "base/log.h"
#include "base/text.h"

namespace tb {

// The key, some dozens of printable characters, built once per run from short pieces: it stands whole in no binary.
const Text& GetScrambleKey();

// Byte I of the result is byte I of `data` XOR byte (offset + I) of the endless repetition of `key`. Error 9 for empty
// data or when that position is negative.
Text XorWithScrambleKey(TextView data, TextView key, std::int16_t offset);

// The XOR with the program's key; its own inverse for the same offset. Error 9 for an empty text.
Text ScrambleString(TextView text, std::int16_t offset);
Text UnscrambleString(TextView text, std::int16_t offset);

// With the text's own length as offset, as the site list does it, so that equal beginnings of texts of different
// lengths do not look alike. Error 9 for an empty text, error 6 from 32768 characters on.
Text ScrambleByLength(TextView text);
Text UnscrambleByLength(TextView text);
// The same into the caller's memory, as many bytes as the text has; it may be the text's own.
void ScrambleByLength(TextView text, char* target);
inline void UnscrambleByLength(TextView text, char* target) { ScrambleByLength(text, target); }

// What ScrambleByLength combines with a text of `length` bytes, up to 32767: so many bytes, and at least eight more.
const char* KeyFrom(size_t length);

// Scrambled, then Base64; and back.
Text ScrambleToBase64(TextView text, std::int16_t offset);
Text UnscrambleFromBase64(TextView text, std::int16_t offset);

// A frame around a text: CRC-32 of the scrambled text in upper-case hexadecimal without leading zeros, "G", the text
// scrambled from offset 0. Error 9 for an empty text.
Text EncryptStringChk(TextView plain);

// Checks a frame and takes its text out. False, with `plain` as it was, for a wrong checksum (no line) and for anything
// that is no frame (one line of level 0 on `log`).
bool ChkEncryptString(TextView data, Text& plain, LogSink& log) noexcept;

}  // namespace tb
