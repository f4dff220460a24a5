#include "sitedb/WhiteListDB.h"

#include <algorithm>

#include "base/numbers.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {

WhiteListDB::WhiteListDB() : m_Match("List ", [this](const Text& line) { Log(line, LogLevel::Always); }) {
    m_Domains.IgnoreCase(true);
}

bool WhiteListDB::isWhiteList(const Text& Host) noexcept {
    return TrapOr(
        false,
        [&] {
            const Text decoded = UrlDecode(Host);
            const std::vector<TextView> labels = SplitViews(decoded, '.');
            const std::int16_t highest = NarrowToInt16(static_cast<std::int64_t>(labels.size()) - 1);
            const int last = std::max(highest - 1, 0);
            for (int first = 0; first <= last; ++first) {
                const Text suffix = m_Match.SubJoin(labels, static_cast<std::int16_t>(first), highest, ".");
                if (m_Domains.Exists(suffix)) return true;
            }
            return false;
        },
        [this](const RuntimeError& error) { Log("List Match Error: " + error.Line(), LogLevel::Always); });
}

void WhiteListDB::AddToDB(const Text& Domain) noexcept {
    Trap(
        [&] {
            const Text key = UrlDecode(LowerCase(Domain));
            if (m_Domains.Exists(key)) return Log("List AddToDB: dup entry - " + key, LogLevel::Debug);
            m_Domains.Add(key, {});
        },
        [this](const RuntimeError& error) { Log("List AddToDB Error: " + error.Line(), LogLevel::Always); });
}

}  // namespace tb
