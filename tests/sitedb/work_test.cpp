// Doubling a list must not do much more than double the work on it. The work is counted, not timed: the sources of the
// list are built for this program with a call at each branch of theirs.
#include <gtest/gtest.h>
#include <malloc.h>

#include <functional>

#include "sitedb/ListOfSites.h"
#include "urlcheck/url/UrlDecode.h"

namespace {

std::uint64_t Steps = 0;

}  // namespace

extern "C" void __sanitizer_cov_trace_pc() { ++Steps; }

namespace tb {
namespace {

constexpr int Few = 4000;

// A list of so many sites, and an update that adds a tenth to them and takes a tenth away.
struct Shape {
    const char* Name;
    Text (*Site)(int number);
};

Text Number(int number) { return std::to_string(100000 + number * 7919 % 1000003); }

const Shape Shapes[] = {
    {"a host each", [](int number) { return "http://host" + Number(number) + ".example"; }},
    {"one host", [](int number) { return "http://host.example/path" + Number(number); }},
    {"one host, encoded", [](int number) { return "http://host.example/%70ath+" + Number(number); }},
    {"one chain",  // words of the key that are swapped leave its hash
     [](int number) {
         return "http://" + Number(number).substr(0, 4) + "abcd" + Number(number).substr(2, 4) + ".a.example";
     }},
    {"two entries a host",
     [](int number) { return "http://host" + Number(number / 2) + ".example/" + Number(number); }},
};

// The steps of each operation on a list of that many sites.
std::vector<std::pair<Text, std::uint64_t>> StepsOf(const Shape& shape, int count) {
    ListOfSites rig;
    std::vector<std::pair<Text, std::uint64_t>> all;
    const auto counted = [&](const char* what, const std::function<void()>& work) {
        const std::uint64_t before = Steps;
        work();
        all.emplace_back(what, Steps - before);
    };
    Text lines = "202611210900\n1";
    for (int number = 0; number < count; ++number) lines += "\n+\t" + shape.Site(number) + "\t2\tdate";
    counted("filling", [&] { rig.Update(lines); });
    EXPECT_EQ(rig.DB->LiveCount(), count) << shape.Name;
    rig.Renew();
    counted("load", [&] { EXPECT_TRUE(rig.DB->LoadDB(ListOfSites::File("202611210900"), 1)); });
    counted("verdicts", [&] {
        for (int number = 0; number < count; ++number) EXPECT_TRUE(rig.Hits(UrlDecode(shape.Site(number)) + "/login"));
        for (int number = 0; number < count; ++number) EXPECT_FALSE(rig.Hits("https" + shape.Site(number).substr(4)));
    });
    lines = "202611210901\n0";
    for (int number = 0; number < count / 10; ++number) {
        lines += "\n-\t" + shape.Site(number * 10) + "\t2\tdate\n+\t" + shape.Site(count + number) + "\t2\tdate";
    }
    counted("update", [&] { rig.Update(lines); });
    EXPECT_EQ(rig.DB->LiveCount(), count) << shape.Name;
    lines = "202611210902\n0";
    for (int number = 0; number < count; ++number) lines += "\n-\t" + shape.Site(count - 1 - number) + "\t2\tdate";
    counted("emptying", [&] { rig.Update(lines); });
    return all;
}

TEST(Work, DoublesWithTheList) {
    for (const Shape& shape : Shapes) {
        const auto once = StepsOf(shape, Few);
        const auto twice = StepsOf(shape, 2 * Few);
        for (size_t index = 0; index < once.size(); ++index) {
            ASSERT_GT(once[index].second, static_cast<std::uint64_t>(Few)) << "nothing is counted";
            const double ratio = static_cast<double>(twice[index].second) / static_cast<double>(once[index].second);
            EXPECT_LE(ratio, 2.3) << shape.Name << ", " << once[index].first;
        }
    }
}

// Most of a list that goes gives its memory back with the update that takes it.
TEST(Work, TheRoomOfRemovedEntriesIsGivenBack) {
    ListOfSites rig;
    const auto inUse = [&] {
        rig.Web.Replies.clear();
        rig.Storage.Contents.clear();
        return mallinfo2().uordblks + mallinfo2().hblkhd;
    };
    const size_t before = inUse();
    const auto change = [&](const char* mark, int count) {
        Text lines = "202611210900\n0";
        for (int number = 0; number < count; ++number)
            lines += Text("\n") + mark + "\thttp://host" + Number(number) + "\t2\t" + Text(30000, 'v');
        rig.Update(lines);
    };
    change("+", 300);
    const size_t filled = inUse();
    change("-", 290);
    EXPECT_EQ(rig.DB->LiveCount(), 10);
    EXPECT_LT(inUse() - before, (filled - before) / 2);
}

}  // namespace
}  // namespace tb
