#include "platform/display.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>

using namespace mirelon;

namespace {

TEST(XftDpi, IsFoundAmongOtherResources) {
    EXPECT_EQ(xftDpi("Xft.dpi:\t144\n"), 144.0);
    EXPECT_EQ(xftDpi("Xcursor.size: 24\nXft.dpi: 192\nXft.hinting: 1\n"), 192.0);
    EXPECT_EQ(xftDpi("Xft.dpi:120.5"), 120.5);
}

TEST(XftDpi, IsNothingWhenItIsAbsentOrNoPositiveNumber) {
    for (const char* text :
         {"", "\n\n", "Xft.dpi", "Xft.dpi:", "Xft.dpi:\t\n", "Xft.dpi: many", "Xft.dpi: 0",
          "Xft.dpi: -96", "Xft.dpi: nan", "Xft.dpi: inf", "MyXft.dpi: 96", "Xft.dpiscale: 96"})
        EXPECT_EQ(xftDpi(text), std::nullopt) << text;
}

TEST(DesktopScale, IsOneWithoutADisplay) {
    unsetenv("DISPLAY");
    unsetenv("MIRELON_SCALE");
    EXPECT_FALSE(displayAvailable());
    EXPECT_EQ(desktopScale(), 1.0);
}

TEST(DesktopScale, ComesFromTheEnvironmentFirst) {
    unsetenv("DISPLAY");
    setenv("MIRELON_SCALE", "2.5", 1);
    EXPECT_EQ(desktopScale(), 2.5);
    setenv("MIRELON_SCALE", "0.5", 1);
    EXPECT_EQ(desktopScale(), 0.5);
    setenv("MIRELON_SCALE", "big", 1);
    EXPECT_EQ(desktopScale(), 1.0);
    unsetenv("MIRELON_SCALE");
}

TEST(DesktopScale, IsTheHostsWhereTheEnvironmentHasNone) {
    unsetenv("DISPLAY");
    unsetenv("MIRELON_SCALE");
    EXPECT_EQ(desktopScale(1.5), 1.5);
    setenv("MIRELON_SCALE", "2.5", 1);
    EXPECT_EQ(desktopScale(1.5), 2.5);
    unsetenv("MIRELON_SCALE");
}

TEST(DesktopScale, IsWhatTheUserHasChosenBeforeTheHosts) {
    unsetenv("DISPLAY");
    unsetenv("MIRELON_SCALE");
    EXPECT_EQ(desktopScale(1.5, 2.0), 2.0);
    EXPECT_EQ(desktopScale(1.5, 1.0), 1.0);
    EXPECT_EQ(desktopScale(1.5, -1.0), 1.5);
    setenv("MIRELON_SCALE", "2.5", 1);
    EXPECT_EQ(desktopScale(1.5, 2.0), 2.5);
    unsetenv("MIRELON_SCALE");
}

TEST(DesktopScale, IsNotTheHostsWhenThatIsNoneOrNonsense) {
    unsetenv("DISPLAY");
    unsetenv("MIRELON_SCALE");
    for (const double nonsense : {0.0, -2.0, std::numeric_limits<double>::quiet_NaN(),
                                  std::numeric_limits<double>::infinity()})
        EXPECT_EQ(desktopScale(nonsense), 1.0) << nonsense;
}

} // namespace
