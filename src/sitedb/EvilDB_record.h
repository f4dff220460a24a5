// The record of one site, as it lies scrambled in the list, and the URL in it. Only the parts of EvilDB include this.
#pragma once

#include <array>

#include "base/errors.h"
#include "base/text.h"
#include "sitedb/ShortMemory.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

inline constexpr char FieldEnd = '\t';

// The stamp that asks a service for everything.
inline constexpr const char* NoDataStamp = "200001010000";

// A record, joined and scrambled. Error 6 from 32768 characters on.
class ScrambledRecord {
public:
    ScrambledRecord(TextView url, TextView category, TextView validated);
    ScrambledRecord(const ScrambledRecord&) = delete;
    ScrambledRecord& operator=(const ScrambledRecord&) = delete;

    TextView Bytes() const { return m_Bytes; }

private:
    ShortMemory m_Memory;
    TextView m_Bytes;
};

// One that is scrambled already, in the same role.
class StoredRecord {
public:
    explicit StoredRecord(TextView bytes) : m_Bytes(bytes) {}
    TextView Bytes() const { return m_Bytes; }

private:
    TextView m_Bytes;
};

// The plain record of a scrambled entry, for as long as one comparison takes. Error 9 for a field that is not there.
class Record {
public:
    explicit Record(TextView scrambled);
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    size_t FieldCount() const { return m_FieldCount; }
    // Still percent-encoded, lower case, without trailing slashes.
    TextView Url() const { return Field(0); }
    TextView Category() const { return Field(1); }
    TextView Validated() const { return Field(2); }
    TextView Plain() const { return m_Plain; }

    // False when nothing in the whole record needs decoding: no "%", no "+".
    bool MayDecode() const { return m_MayDecode; }
    // False when all letters of the whole record are small ones of ASCII.
    bool MayFold() const { return m_MayFold; }
    // The third part between "/" of a URL that needs no decoding. False without one.
    bool FindHost(TextView& host) const;

private:
    static constexpr size_t KnownFields = 3;
    static constexpr size_t KnownSlashes = 3;

    TextView Field(size_t index) const {
        if (index >= m_FieldCount) throw Error(ErrorNumber::Subscript);
        return m_Fields[index];
    }
    void Scan();
    void EndField(size_t place);

    ShortMemory m_Memory;
    TextView m_Plain;
    std::array<TextView, KnownFields> m_Fields;
    std::array<size_t, KnownSlashes> m_Slashes;
    size_t m_FieldCount = 0;  // also those behind the known ones
    size_t m_FieldBegin = 0;
    size_t m_SlashCount = 0;  // of the known ones
    bool m_MayDecode = false;
    bool m_MayFold = false;
};

// What a URL has that is more than plain text to a list.
struct UrlTraits {
    explicit UrlTraits(TextView url);

    bool MayFold = false;    // letters that are not small, and letters beyond ASCII, which may be either
    bool MayDecode = false;  // "%" or "+"
};

// A URL decoded, without a copy where there is nothing to decode.
class DecodedUrl {
public:
    explicit DecodedUrl(const Record& record);
    DecodedUrl(TextView encoded, bool mayDecode);
    DecodedUrl(const DecodedUrl&) = delete;
    DecodedUrl& operator=(const DecodedUrl&) = delete;

    TextView Whole() const { return m_Whole; }
    // False for a URL of fewer than three parts between "/".
    bool HasHost() const { return m_HasHost; }
    // The third part: port and user name are in it.
    TextView Host() const { return m_Host; }

private:
    void FindHost();

    Text m_Copy;
    TextView m_Whole;
    TextView m_Host;
    bool m_HasHost = false;
};

// A URL from outside.
class SiteUrl {
public:
    explicit SiteUrl(TextView url) : SiteUrl(url, UrlTraits(url)) {}
    SiteUrl(const SiteUrl&) = delete;
    SiteUrl& operator=(const SiteUrl&) = delete;

    // As it is stored: lower case, without trailing slashes, still encoded.
    TextView Clean() const { return m_Clean; }
    const DecodedUrl& Decoded() const { return m_Decoded; }

private:
    SiteUrl(TextView url, const UrlTraits& traits);

    Text m_Lower;
    TextView m_Clean;
    DecodedUrl m_Decoded;
};

}  // namespace tb
