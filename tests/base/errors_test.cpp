#include "base/errors.h"

#include <gtest/gtest.h>

#include <new>

#include "base/event.h"

namespace tb {
namespace {

TEST(Errors, LinesHaveNumberAndStandardText) {
    EXPECT_EQ(Error(ErrorNumber::Subscript).Line(), "9 Subscript out of range");
    EXPECT_EQ(Error(ErrorNumber::PermissionDenied).Line(), "70 Permission denied");
    EXPECT_EQ(Error(ErrorNumber::PathFileAccess).Line(), "75 Path/File access error");
    EXPECT_EQ(Error(ErrorNumber::PathNotFound).Line(), "76 Path not found");
    EXPECT_EQ(Error(ErrorNumber::DuplicateKey).Line(),
              "457 This key is already associated with an element of this collection");
}

TEST(Errors, TrapCatchesWhateverIsThrown) {
    const auto caught = [](auto body) {
        std::int32_t number = 0;
        Trap(body, [&](const RuntimeError& error) { number = error.Number; });
        return number;
    };
    EXPECT_EQ(caught([] {}), 0);
    EXPECT_EQ(caught([] { throw RuntimeError(1001, "Invalid key"); }), 1001);
    EXPECT_EQ(caught([] { throw std::bad_alloc(); }), 7);
    EXPECT_EQ(caught([] { throw 42; }), 51);
}

TEST(Events, HandlersRunInOrderAndMayConnectMore) {
    Event<int> event;
    Text heard;
    event.Connect([&](int value) {
        heard += "a" + std::to_string(value);
        if (value == 1) event.Connect([&](int later) { heard += "c" + std::to_string(later); });
    });
    event.Connect([&](int value) { heard += "b" + std::to_string(value); });
    event.Raise(1);
    event.Raise(2);
    EXPECT_EQ(heard, "a1b1a2b2c2");
}

}  // namespace
}  // namespace tb
