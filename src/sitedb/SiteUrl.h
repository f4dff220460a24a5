// The URL of a site as the list goes by it: decoded, and the host in it.
#pragma once

#include "sitedb/SiteRecord.h"

namespace tb {

// A URL decoded, without a copy where there is nothing to decode.
class DecodedUrl {
public:
    // Views the record, which must outlive it.
    explicit DecodedUrl(const SiteRecord& record);
    DecodedUrl(TextView encoded, bool mayDecode);
    DecodedUrl(const DecodedUrl&) = delete;
    DecodedUrl& operator=(const DecodedUrl&) = delete;

    TextView Whole() const { return m_Whole; }
    // False for a URL of fewer than three parts between "/".
    bool HasHost() const { return m_Host.has_value(); }
    // The third part: port and user name are in it. Empty without one.
    TextView Host() const { return m_Host.value_or(TextView()); }

private:
    Text m_Copy;
    TextView m_Whole;
    std::optional<TextView> m_Host;
};

// A URL from outside.
class SiteUrl {
public:
    // Views `url` where that is as it is stored already.
    explicit SiteUrl(TextView url);
    SiteUrl(const SiteUrl&) = delete;
    SiteUrl& operator=(const SiteUrl&) = delete;

    // As it is stored: lower case, without trailing slashes, still encoded.
    TextView Clean() const { return m_Clean; }
    const DecodedUrl& Decoded() const { return m_Decoded; }

private:
    // What it has that is more than plain text to a list.
    struct Traits {
        explicit Traits(TextView url);

        bool MayFold = false;    // letters that are not small, and letters beyond ASCII, which may be either
        bool MayDecode = false;  // "%" or "+"
    };
    SiteUrl(TextView url, const Traits& traits);

    Text m_Lower;
    TextView m_Clean;
    DecodedUrl m_Decoded;
};

}  // namespace tb
