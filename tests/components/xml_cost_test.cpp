// The cost of parsing and writing grows with the length of the text, whatever it is made of.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

#include "base/errors.h"
#include "components/tbXML/XmlParser.h"

namespace tb {
namespace {

// Where the repeated part stands.
struct Repeated {
    TextView Before;
    TextView Part;
    TextView Behind;
};

Text TextOf(const Repeated& pattern, size_t count) {
    Text text(pattern.Before);
    for (size_t index = 0; index < count; ++index) text += pattern.Part;
    return text += pattern.Behind;
}

// The processor's seconds for reading the text and writing it again, the best of three.
double Cost(const Repeated& pattern, size_t count) {
    const Text text = TextOf(pattern, count);
    double best = 1e9;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::clock_t start = std::clock();
        Trap([&] { EXPECT_GT(ParseXml(text)->XML().size(), 3U); }, [](const RuntimeError&) {});
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

TEST(XmlCost, GrowsLinearly) {
    constexpr size_t count = size_t{1} << 14;
    // Twice the length would cost four times as much if anything were read or copied again and again.
    constexpr double allowed = 3.2;
    constexpr double noise = 0.002;
    std::vector<Repeated> patterns{{"<r", " a='1'", "/>"}, {"", "<!--'-->", "<r/>"}, {"<r", " ", "/>"}};
    for (const TextView part : {"<a/>\n", "text<b>x</b>", "<c d='1' e=\"&lt;\">&amp;</c>\r\n", "word ", "&", "&#",
                                "&amp", "&#x1", "]]", "--", "<!---->", "<![CDATA[]]>", "<?>?>"}) {
        patterns.push_back({"<r>", part, "</r>"});
    }
    // Never closed: what is refused must not cost more either.
    for (const TextView part : {"<!-", "<a b='", "<a>", "<?", "<![CDATA[", "\n<", "</", "<a'"}) {
        patterns.push_back({"<r>", part, ""});
    }
    for (const Repeated& pattern : patterns) {
        const double once = Cost(pattern, count);
        const double twice = Cost(pattern, 2 * count);
        const double fourTimes = Cost(pattern, 4 * count);
        EXPECT_LT(twice, allowed * once + noise) << pattern.Part;
        EXPECT_LT(fourTimes, allowed * twice + noise) << pattern.Part;
    }
}

}  // namespace
}  // namespace tb
