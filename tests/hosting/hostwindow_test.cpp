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

// Whether the window manager has nothing to do with it: no frame, no place of its choice.
bool isBare(const HostWindow& window) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(window.connection(), window.id(), &attributes);
    return attributes.override_redirect != False;
}

TEST(HostWindow, IsLeftToTheWindowManagerUnlessItIsBare) {
    test::VirtualDisplay::start();
    EXPECT_FALSE(isBare(HostWindow("title", 320, 200, WindowKind::ordinary)));
    EXPECT_TRUE(isBare(HostWindow("title", 320, 200, WindowKind::bare)));
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
