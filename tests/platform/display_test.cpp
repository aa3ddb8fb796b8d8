#include "platform/display.h"

#include <cstdlib>
#include <gtest/gtest.h>

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
    setenv("MIRELON_SCALE", "big", 1);
    EXPECT_EQ(desktopScale(), 1.0);
    unsetenv("MIRELON_SCALE");
}

} // namespace
