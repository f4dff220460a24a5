#include "base/date.h"

#include <gtest/gtest.h>

#include "base/errors.h"

namespace tb {
namespace {

TEST(Date, CalendarRoundTrips) {
    for (const CivilDate& civil :
         {CivilDate{1970, 1, 1, 0, 0, 0}, CivilDate{2004, 2, 29, 23, 59, 59}, CivilDate{1899, 12, 31, 1, 2, 3},
          CivilDate{2000, 2, 29, 12, 0, 0}, CivilDate{100, 1, 1, 0, 0, 0}, CivilDate{9999, 12, 31, 23, 59, 59}}) {
        const CivilDate back = Date(civil).Civil();
        EXPECT_EQ(FormatDateTime(Date(civil)), FormatDateTime(Date(back)));
        EXPECT_EQ(back.Year, civil.Year);
        EXPECT_EQ(back.Day, civil.Day);
        EXPECT_EQ(back.Second, civil.Second);
    }
    EXPECT_EQ(Date(CivilDate{2026, 11, 21, 3, 29, 0}).Seconds(), 1795231740);
    EXPECT_EQ(Date(CivilDate{1969, 12, 31, 23, 0, 0}).Day(), Date(CivilDate{1969, 12, 31}));
}

TEST(Date, MaskAndLocaleSeparators) {
    const Date date(CivilDate{2005, 3, 7, 4, 5, 6});
    EXPECT_EQ(FormatDateTime(date), "03/07/2005 04:05:06");
    EXPECT_EQ(FormatDateTime(date, {'.', '-'}), "03.07.2005 04-05-06");
    EXPECT_EQ(FormatDate(date), "03/07/2005");
    EXPECT_EQ(ParseDate("03.07.2005 04-05-06"), date);
    EXPECT_EQ(ParseDate("3/7/2005"), date.Day());
    EXPECT_EQ(ParseDate("03/07/2005 04:05"), date.PlusSeconds(-6));
}

TEST(Date, WhatIsNoDateRaisesTypeMismatch) {
    for (const char* text : {"", "1/2", "13/01/2005", "02/29/2005", "04/31/2005", "01/01/2005 24:00:00", "1/1/99",
                             "01/01/2005 1:2:3:4", "01/01/20051", "00/10/2005"}) {
        try {
            ParseDate(text);
            ADD_FAILURE() << text;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.Number, 13) << text;
        }
    }
}

}  // namespace
}  // namespace tb
