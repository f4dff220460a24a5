#include "shell/helpers/Versions.h"

#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

struct Version {
    std::int32_t Key = 0;
    std::int32_t Third = 0;
};

std::int32_t PartOf(const std::vector<TextView>& parts, size_t index) {
    return index >= parts.size() || parts[index].empty() ? 0 : ToInt32(parts[index]);
}

Version ReadVersion(TextView text) {
    const std::vector<TextView> parts = SplitViews(text, '.');
    const std::int64_t key = std::int64_t{PartOf(parts, 0)} * 65536 + PartOf(parts, 1);
    return {NarrowToInt32(key), PartOf(parts, 2)};
}

}  // namespace

bool IsVersionNewerThan(TextView a, TextView b, bool orEqual) {
    const Version left = ReadVersion(a);
    const Version right = ReadVersion(b);
    if (left.Key != right.Key) return left.Key > right.Key;
    return left.Third > right.Third || (orEqual && left.Third == right.Third);
}

Date ParseHttpDate(TextView text) {
    const auto number = [&](long column, long length) { return ToInt32(Mid(text, column, length)); };
    const TextView month = Mid(text, 9, 3);
    const size_t place = TextView("JanFebMarAprMayJunJulAugSepOctNovDec").find(month);
    if (month.size() != 3 || place == TextView::npos || place % 3 != 0) throw Error(ErrorNumber::TypeMismatch);
    return Date(CivilDate{number(13, 4), static_cast<int>(place / 3) + 1, number(6, 2), number(18, 2), number(21, 2),
                          number(24, 2)});
}

}  // namespace tb
