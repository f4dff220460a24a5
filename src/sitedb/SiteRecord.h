// The record of one site as the list keeps it: URL, category and validated text, joined by tabs and scrambled.
#pragma once

#include <array>
#include <optional>

#include "base/errors.h"
#include "base/text.h"
#include "sitedb/ShortMemory.h"

namespace tb {

inline constexpr char FieldEnd = '\t';

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

// The plain record of a scrambled entry, for as long as one comparison takes. Error 9 for a field that is not there.
class SiteRecord {
public:
    explicit SiteRecord(TextView scrambled);
    SiteRecord(const SiteRecord&) = delete;
    SiteRecord& operator=(const SiteRecord&) = delete;

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
    // As UrlAuthority of the URL as it stands, not decoded; the pass over the record has seen its slashes already.
    std::optional<TextView> Authority() const;

private:
    static constexpr size_t KnownFields = 3;
    static constexpr size_t KnownSlashes = 3;

    TextView Field(size_t index) const {
        if (index >= m_FieldCount) throw Error(ErrorNumber::Subscript);
        return m_Fields[index];
    }
    void Scan();
    void AddField(size_t end);

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

}  // namespace tb
