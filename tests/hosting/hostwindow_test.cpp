#include "hosting/hostwindow.h"

#include "tests/support/virtualdisplay.h"

#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace mirelon::hosting {
namespace {

// What the window manager is told of the window's size.
XSizeHints sizeHints(const HostWindow& window) {
    XSizeHints hints{};
    long given = 0;
    XGetWMNormalHints(window.connection(), window.id(), &hints, &given);
    return hints;
}

void expectFixed(const HostWindow& window, int width, int height) {
    const XSizeHints hints = sizeHints(window);
    EXPECT_EQ(hints.flags & (PMinSize | PMaxSize), PMinSize | PMaxSize);
    EXPECT_EQ(hints.min_width, width);
    EXPECT_EQ(hints.max_width, width);
    EXPECT_EQ(hints.min_height, height);
    EXPECT_EQ(hints.max_height, height);
}

TEST(HostWindow, HasOneSizeForItsUser) {
    test::VirtualDisplay::start();
    const HostWindow window("title", 320, 200, WindowKind::ordinary);
    expectFixed(window, 320, 200);
}

TEST(HostWindow, HasOneSizeForItsUserAlsoWhenItHasGrown) {
    test::VirtualDisplay::start();
    HostWindow window("title", 320, 200, WindowKind::ordinary);
    window.resize(400, 300);
    expectFixed(window, 400, 300);
}

} // namespace
} // namespace mirelon::hosting
