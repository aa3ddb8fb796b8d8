// The display texts at the ends of their formats.
#include "processor/displaytext.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string number(float value, int digits) {
    char text[32] = "untouched";
    float2string2(value, digits, text);
    return text;
}

TEST(NumberText, KeepsTheEndsOfItsRangeAndRefusesWhatLiesBeyond) {
    EXPECT_EQ(number(9999999.0F, 0), "9999999");
    EXPECT_EQ(number(-9999999.0F, 0), "-9999999");
    EXPECT_EQ(number(2e8F, 0), "untouched");
    EXPECT_EQ(number(-2e7F, 0), "untouched");
}

} // namespace
