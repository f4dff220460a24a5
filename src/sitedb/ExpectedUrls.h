// URLs taken apart and hashed for the site list, beforehand where it was told which ones will be asked for.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "sitedb/DomainTable.h"
#include "sitedb/HostSuffixes.h"

namespace tb {

// A URL with the hashes of its longest suffixes.
class HashedUrl {
public:
    // Runs `visit(hash)` for each hash as soon as it is known. Fails as HostSuffixes does. A port or user name stays
    // inside its label; the scheme is not looked at.
    template <typename Visit>
    HashedUrl(TextView url, Visit visit) : m_Suffixes(url) {
        for (auto hash = m_Hashes.begin(); hash != m_Hashes.end() && m_Suffixes.Next(); ++hash) {
            if (DomainKey::HasHash(m_Suffixes.Suffix())) visit(hash->emplace(m_Suffixes.Suffix()));
        }
        m_Suffixes.Restart();
    }

    // Before the first suffix.
    HostSuffixes& Suffixes() { return m_Suffixes; }
    // The key of the present suffix, the `index`-th from 0 on; with the errors of DomainKey.
    DomainKey KeyOf(size_t index) const {
        const bool isHashed = index < m_Hashes.size() && m_Hashes[index];
        return isHashed ? DomainKey(m_Suffixes.Suffix(), *m_Hashes[index]) : DomainKey(m_Suffixes.Suffix());
    }

private:
    HostSuffixes m_Suffixes;
    std::array<std::optional<DomainHash>, 4> m_Hashes;
};

// Those that will be asked for next, about in this order. Each is given out once.
class ExpectedUrls {
public:
    // Takes these in instead of those before; `visit` as above. After a failure those before the failing one are in.
    template <typename Visit>
    void Replace(const std::vector<TextView>& urls, Visit visit) {
        m_Next = m_Count = 0;
        if (m_Urls.size() < urls.size()) m_Urls = std::vector<std::optional<Expected>>(urls.size());
        for (const TextView url : urls) {
            m_Urls[m_Count].emplace(url, visit);
            ++m_Count;
        }
    }
    // Null for a URL that is not among the next few.
    HashedUrl* Take(TextView url) {
        for (size_t index = m_Next; index < m_Count && index < m_Next + LookAhead; ++index) {
            if (m_Urls[index]->Text != url) continue;
            m_Next = index + 1;
            return &m_Urls[index]->Url;
        }
        return nullptr;
    }

private:
    static constexpr size_t LookAhead = 4;

    struct Expected {
        template <typename Visit>
        Expected(TextView url, Visit visit) : Url(url, visit) {
            Text = Memory.Copy(url);
        }

        ShortMemory Memory;
        TextView Text;
        HashedUrl Url;
    };

    std::vector<std::optional<Expected>> m_Urls;
    size_t m_Count = 0;
    size_t m_Next = 0;
};

}  // namespace tb
