// The cost of parsing and writing grows with the length of the text. What is allocated is counted, which finds every
// copying that grows faster; inputs of several MB on which a rescan would take hours find the rest by the test's limit.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "base/errors.h"
#include "components/tbXML/XmlParser.h"

namespace {

std::atomic<std::size_t> Allocated{0};

}  // namespace

void* operator new(std::size_t size) {
    Allocated += size;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace tb {
namespace {

Text Repeated(TextView part, size_t count) {
    Text text;
    text.reserve(part.size() * count);
    for (size_t index = 0; index < count; ++index) text += part;
    return text;
}

// Bytes allocated to parse `<r>` + part * count + `</r>` and write it again.
double Cost(TextView part, size_t count) {
    const Text text = "<r>" + Repeated(part, count) + "</r>";
    const size_t before = Allocated;
    const Text written = ParseXml(text)->XML();
    EXPECT_GT(written.size(), 3U);
    return static_cast<double>(Allocated - before);
}

TEST(XmlCost, GrowsLinearly) {
    for (const TextView part :
         {"<a/>", "text<b>x</b>", "<c d='1' e=\"&lt;\">&amp;</c>\r\n", "word ", "&", "<!-- -->"}) {
        const double once = Cost(part, 4096);
        const double twice = Cost(part, 8192);
        const double fourTimes = Cost(part, 16384);
        // Doubling a vector or text may round up by another factor of two, and no more.
        EXPECT_LT(twice, 2.5 * once) << part;
        EXPECT_LT(fourTimes, 2.5 * twice) << part;
        EXPECT_LT(fourTimes, 5 * once) << part;
    }
}

TEST(XmlCost, MegabytesOfTheSameAreRead) {
    constexpr size_t count = size_t{1} << 20;
    for (const TextView part : {"&", "&#", "&amp", "&#x1", "]]", "--", "<!---->", "<![CDATA[]]>", "<?>?>", "<a/>\n"}) {
        const ElementPtr root = ParseXml("<r>" + Repeated(part, count) + "</r>");
        EXPECT_EQ(root->Name(), "r");
    }
    EXPECT_EQ(ParseXml("<r" + Repeated(" a='1'", count) + "/>")->AttributeCount(), 1 << 20);
    EXPECT_EQ(ParseXml(Repeated("<!--'-->", count) + "<r/>")->Count(), 0);
    for (const TextView part : {"<!-", "<a b='", "<a>", "<?", "<![CDATA[", "\n<", "</", "<a'"}) {
        EXPECT_THROW(ParseXml("<r>" + Repeated(part, count)), RuntimeError);
    }
}

}  // namespace
}  // namespace tb
