#include "watch/show/numbers.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

namespace vadelwatch {

TEST(GroupedNumber, groupsOfThree) {
    EXPECT_EQ("0", groupedNumber(0));
    EXPECT_EQ("999", groupedNumber(999));
    EXPECT_EQ("1 000", groupedNumber(1000));
    EXPECT_EQ("12 345 678", groupedNumber(12345678));
    EXPECT_EQ("18 446 744 073 709 551 615", groupedNumber(18446744073709551615ULL));
}

TEST(DecimalNumber, hasTheSignOfTheLanguage) {
    EXPECT_EQ("7.7", decimalNumber(7.73, 1));
    EXPECT_EQ('.', decimalSign());
    const GermanMessages german;
    EXPECT_EQ("7,7", decimalNumber(7.73, 1));
    EXPECT_EQ("8", decimalNumber(7.73, 0));
    EXPECT_EQ(',', decimalSign());
}

} // namespace vadelwatch
