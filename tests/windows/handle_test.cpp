#include "platform/win32/Handle.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace tb {
namespace {

std::vector<int> closed;

struct NumberTrait {
    using Value = int;
    static Value None() { return -1; }
    static bool Close(Value value) {
        closed.push_back(value);
        SetLastError(ERROR_SUCCESS);
        return true;
    }
};

using Number = Handle<NumberTrait>;

TEST(Handle, ClosesWhatItHoldsOnceAndNothingElse) {
    closed.clear();
    {
        Number first(1);
        Number second(2);
        second = std::move(first);
        EXPECT_EQ(closed, (std::vector<int>{2}));
        EXPECT_FALSE(first);
        Number& alias = second;
        second = std::move(alias);
        EXPECT_EQ(second.Get(), 1);
        const Number third(std::move(second));
        Number released(3);
        EXPECT_EQ(released.Release(), 3);
        EXPECT_TRUE(Number().Close());
    }
    EXPECT_EQ(closed, (std::vector<int>{2, 1}));
}

TEST(Handle, KeepsTheLastErrorOfTheCallThatFailed) {
    SetLastError(ERROR_DISK_FULL);
    { const Number number(1); }
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DISK_FULL));
}

}  // namespace
}  // namespace tb
