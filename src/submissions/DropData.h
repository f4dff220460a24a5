// What was dropped on the program, as plain data. The Windows side reads it out of the system's objects; everything in
// it was made by another program and may lie. All operations may raise an error.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "base/text.h"

namespace tb {

// A format of the clipboard by its number; the upper half of the range reads as negative.
using ClipboardFormat = std::int16_t;
inline constexpr ClipboardFormat PlainTextFormat = 1;

class ClipboardFormats {
public:
    virtual ~ClipboardFormats() = default;
    // The number of a format known by its name, the same one in all programs.
    virtual ClipboardFormat Register(const Text& name) = 0;
};

// Headers and body of a mail together, in characters: more is refused.
inline constexpr size_t LargestMail = 0x500000;

// A message in the stored form of a mail program: streams by name.
class MessageStorage {
public:
    virtual ~MessageStorage() = default;
    // In braces, upper case.
    virtual Text ClassIdText() = 0;
    // The bytes of a stream that are really there, whatever size it tells; at most LargestMail + 1 of them, with which
    // the mail is refused. Nothing when it cannot be opened.
    virtual std::optional<Text> Stream(const Text& name) = 0;
};

// The part of a data object that hands out files.
class NativeData {
public:
    virtual ~NativeData() = default;
    // The whole memory block of "FileGroupDescriptor"; empty when the object does not hand it out.
    virtual Text DescriptorBytes() = 0;
    // "FileContents" of one index, from 0; null when the object does not hand it out or it is no storage.
    virtual std::unique_ptr<MessageStorage> Storage(std::int32_t index) = 0;
};

class DropData {
public:
    virtual ~DropData() = default;
    virtual bool Has(ClipboardFormat format) = 0;
    // All that is handed out, with what a block of memory has behind its data.
    virtual Text Bytes(ClipboardFormat format) = 0;
    // Plain text with its full length.
    virtual Text PlainText() = 0;
    // Null when the object has none. It lives as long as this object.
    virtual NativeData* Native() = 0;
};

}  // namespace tb
