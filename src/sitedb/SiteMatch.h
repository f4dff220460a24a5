// How the site databases take a host apart and match a URL: host suffixes, the URL with its host replaced, the prefix.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "base/errors.h"
#include "base/text.h"

namespace tb {

class SiteMatch {
public:
    using Report = std::function<void(const Text& line)>;

    // `owner` begins the lines that failures of these operations give to `report`: owner + "SubJoin Error: " + error.
    SiteMatch(Text owner, Report report) : m_Owner(std::move(owner)), m_Report(std::move(report)) {}

    // Parts first to last joined. While the result is empty, the next part takes its place, so that empty leading parts
    // go together with their separators. Empty when first lies behind last, and after a failure.
    Text SubJoin(const std::vector<TextView>& parts, std::int16_t first, std::int16_t last,
                 TextView separator) const noexcept;

    // The parts joined with "/", the one at `index` replaced. Empty after a failure.
    Text Substitution(const std::vector<TextView>& parts, std::int16_t index, const Text& replacement) const noexcept;

    // True when `candidate` begins with `pattern`, case kept.
    static bool InitialMatch(TextView candidate, TextView pattern) noexcept {
        return Left(candidate, pattern.size()) == pattern;
    }

private:
    void Failed(const char* operation, const RuntimeError& error) const;

    Text m_Owner;
    Report m_Report;
};

}  // namespace tb
