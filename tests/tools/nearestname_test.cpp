#include "tools/nearestname.h"

#include <gtest/gtest.h>
#include <vector>

namespace mirelon::tools {
namespace {

const std::vector<std::string> names{"init", "extended width", "reduced width", "", "-L"};

TEST(NearestName, IsFoundWhateverItsCaseAndTheBlanksAround) {
    EXPECT_EQ(findName(" Extended WIDTH ", names), 1U);
    EXPECT_EQ(findName("-l", names), 4U);
    EXPECT_EQ(findName("width", names), std::nullopt);
}

TEST(NearestName, TheEmptyNameIsNobodys) {
    EXPECT_EQ(findName("", names), std::nullopt);
    EXPECT_EQ(findName("   ", names), std::nullopt);
}

TEST(NearestName, IsTheOneWithTheFewestChanges) {
    EXPECT_EQ(*nearestName("extendet with", names), "extended width");
    EXPECT_EQ(*nearestName("REDUCED", names), "reduced width");
    EXPECT_EQ(*nearestName("extnded", names), "extended width");
    EXPECT_EQ(*nearestName("inti", names), "init");
    EXPECT_EQ(*nearestName("L", names), "-L");
}

TEST(NearestName, IsTheFirstOfThoseThatAreEquallyNear) {
    const std::vector<std::string> alike{"take 1", "take 2", "take 3"};
    EXPECT_EQ(nearestName("take", alike), alike.data());
    EXPECT_EQ(nearestName("take 9", alike), alike.data());
}

TEST(NearestName, IsNothingAmongNamelessOnes) {
    EXPECT_EQ(nearestName("x", std::vector<std::string>{"", "  "}), nullptr);
    EXPECT_EQ(unknownName("preset", "x", {}), "unknown preset \"x\"");
}

} // namespace
} // namespace mirelon::tools
