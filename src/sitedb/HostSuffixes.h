// A URL as the site databases look it up: in lower case, under the suffixes of its host.
#pragma once

#include <cstdint>

#include "sitedb/ShortMemory.h"

namespace tb {

// for (HostSuffixes url(text); url.Next();) runs through the suffixes, the longest first: www.a.example, a.example. The
// last label alone is none, unless it is the whole host. Empty labels in front of a suffix are left out of it.
class HostSuffixes {
public:
    // Error 6 for more labels than 16 bits can count.
    explicit HostSuffixes(TextView url);
    HostSuffixes(const HostSuffixes&) = delete;
    HostSuffixes& operator=(const HostSuffixes&) = delete;

    // Goes on to the next suffix, at first to the first one. A URL of fewer than three parts between "/" has none, one
    // with an empty host has an empty one.
    bool Next();
    // Next gives the first one again.
    void Restart() { m_Label = 0; }
    TextView Suffix() const { return m_Lowered.substr(m_Suffix, m_HostEnd - m_Suffix); }

    // The URL with its host shortened to the suffix, in two pieces.
    TextView BeforeHost() const { return m_Lowered.substr(0, m_HostBegin); }
    TextView FromSuffix() const { return m_Lowered.substr(m_Suffix); }

private:
    void Fold(TextView url);
    size_t DotFrom(size_t index) const;

    ShortMemory m_Memory;
    TextView m_Lowered;
    std::uint64_t m_Dots = 0;  // where they are in the first bytes, a bit each
    size_t m_HostBegin = 0;
    size_t m_HostEnd = 0;  // 0 without a host
    size_t m_Suffix = 0;
    size_t m_Label = 0;  // where the present label begins; 0 before the first
    size_t m_Dot = 0;    // the one behind it
};

}  // namespace tb
