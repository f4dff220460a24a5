#include "sitedb/SiteMatch.h"

namespace tb {

Text SiteMatch::SubJoin(const std::vector<TextView>& parts, std::int16_t first, std::int16_t last,
                        TextView separator) const noexcept {
    return TrapOr(
        Text(),
        [&] {
            Text result;
            for (int index = first; index <= last; ++index) {
                const TextView part = At(parts, static_cast<size_t>(index));
                if (!result.empty()) result += separator;
                result += part;
            }
            return result;
        },
        [&](const RuntimeError& error) { Failed("SubJoin", error); });
}

Text SiteMatch::Substitution(const std::vector<TextView>& parts, std::int16_t index,
                             const Text& replacement) const noexcept {
    return TrapOr(
        Text(),
        [&] {
            Text result;
            At(parts, static_cast<size_t>(index));
            for (size_t part = 0; part < parts.size(); ++part) {
                if (part > 0) result += '/';
                result += part == static_cast<size_t>(index) ? TextView(replacement) : parts[part];
            }
            return result;
        },
        [&](const RuntimeError& error) { Failed("Substitution", error); });
}

void SiteMatch::Failed(const char* operation, const RuntimeError& error) const {
    m_Report(m_Owner + operation + " Error: " + error.Line());
}

}  // namespace tb
