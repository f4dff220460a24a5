#include <gtest/gtest.h>

#include <limits>

#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "urlcheck/UpdateStatistics.h"

namespace tb {
namespace {

class SetClock : public Clock {
public:
    Date Now() override { return Present; }
    Date Present = Date(CivilDate{2005, 11, 30, 23, 0, 0});
};

TEST(UpdateStatistics, BeginsAnewWhenADayHasPassed) {
    SetClock clock;
    RecordedLog log;
    UpdateStatistics statistics(clock, log);
    statistics.EvilAdded(1, 0);
    clock.Present = Date(CivilDate{2005, 12, 1, 0, 0, 0});
    statistics.EvilAdded(2, 1);
    EXPECT_EQ(Raised([&] { statistics.EvilAdded(std::numeric_limits<std::int32_t>::max(), 0); }), 6);
    clock.Present = Date(CivilDate{2005, 12, 1, 0, 0, 1});
    statistics.EvilAdded(0, 5);
    EXPECT_EQ(log.Take(),
              (std::vector<Text>{"1 ***Display Statistics 11/30/2005 +1 -0", "1 ***Display Statistics 11/30/2005 +3 -1",
                                 "1 ***Display Statistics 12/01/2005 +0 -5"}));
}

}  // namespace
}  // namespace tb
