// The size of the window as the user chooses it in the window.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <utility>

#include <X11/Xlib.h> // last: its macros are in the way of the others
#include <X11/keysym.h>

using namespace mirelon::test;
using namespace std::chrono_literals;
using mirelon::hosting::HostCall;

namespace {

using Size = std::pair<int, int>;

// The menu's lines.
enum Line { percent100, percent125, percent150, percent175, percent200, asTheDesktop = 7 };
constexpr int lines = 8;

class WindowSize : public testing::Test {
  protected:
    WindowSize() {
        VirtualDisplay::start();
        unsetenv("MIRELON_SCALE");
        setScreenResources("");
    }
    ~WindowSize() override {
        unsetenv("MIRELON_SCALE");
        setScreenResources("");
    }

    // A host that follows, or that answers this to the one or the other question.
    void follow(VstIntPtr can = 1, VstIntPtr does = 1) {
        editor.host.answer(audioMasterCanDo, [can](const HostCall& call) {
            return std::strcmp(static_cast<const char*>(call.ptr), "sizeWindow") == 0 ? can : 0;
        });
        editor.host.answer(audioMasterSizeWindow, [this, does](const HostCall& call) {
            if (does != 0)
                editor.window->resize(call.index, static_cast<int>(call.value));
            return does;
        });
    }
    void open() {
        editor.window->resize(size().first, size().second);
        editor.scale = size().first / static_cast<double>(editorWidth);
        editor.open();
        editor.moveTo(nowhere.x, nowhere.y);
    }
    Size size() {
        const ERect rect = editor.rect();
        return {rect.right - rect.left, rect.bottom - rect.top};
    }
    // False when no menu opens.
    bool choose(Line line) {
        editor.moveTo(nowhere.x, nowhere.y);
        const Pixels closed = editor.pixels();
        editor.click(title.x, title.y, 3);
        if (!editor.runUntilStill(closed))
            return false;
        const Pixels open = editor.window->pixels();
        const auto [top, bottom] = changedRows(closed, open);
        if (bottom - top < 100)
            return false;
        const double y = (top + (bottom - top) * (2 * line + 1) / (2.0 * lines)) / editor.scale;
        editor.click(title.x + 20, y);
        return editor.runUntilStill(open);
    }

    EditorHost editor;
};

TEST_F(WindowSize, ItsMenuOpensAgainAfterEscapeWasPressedTwice) {
    follow();
    open();
    const Pixels closed = editor.pixels();
    editor.click(title.x, title.y, 3);
    ASSERT_TRUE(editor.runUntilStill(closed));
    const Pixels opened = editor.window->pixels();
    // The second comes while the menu fades.
    for (int i = 0; i < 2; ++i) {
        editor.window->keyDown(XK_Escape);
        editor.window->keyUp(XK_Escape);
    }
    ASSERT_TRUE(editor.runUntilStill(opened));
    ASSERT_TRUE(choose(percent150));
    EXPECT_TRUE(editor.runUntil([&] { return size() == Size(486, 522); }));
}

TEST_F(WindowSize, ItsMenuMarksWhatIsChosen) {
    follow();
    open();
    const Pixels closed = editor.pixels();
    const auto opened = [&] {
        editor.moveTo(nowhere.x, nowhere.y);
        editor.click(title.x, title.y, 3);
        EXPECT_TRUE(editor.runUntilStill(closed));
        const Pixels menu = editor.window->pixels();
        editor.key(XK_Escape);
        EXPECT_TRUE(editor.runUntilStill(menu));
        return menu;
    };
    const Pixels byTheDesktop = opened();
    const auto [top, bottom] = changedRows(closed, byTheDesktop);
    ASSERT_TRUE(choose(percent100));
    const auto [first, last] = changedRows(byTheDesktop, opened());
    const int line = (bottom - top) / lines;
    EXPECT_LT(first, top + line) << "100 %";
    EXPECT_GT(last, bottom - line) << "as the desktop";
}

TEST_F(WindowSize, IsAnotherAtOnceWhereTheHostFollows) {
    follow();
    open();
    ASSERT_TRUE(choose(percent150));
    EXPECT_TRUE(editor.runUntil([&] { return size() == Size(486, 522); }));
    const auto asked = editor.host.calls(audioMasterSizeWindow);
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked.front().index, 486);
    EXPECT_EQ(asked.front().value, 522);
    // The window is drawn to its last corner.
    EXPECT_TRUE(editor.runUntil([&] {
        const Pixels picture = editor.pixels();
        return picture.width == 486 && picture.at(480, 515) == picture.at(10, 515);
    }));
}

TEST_F(WindowSize, LooksAfterAChangeAsWhenItOpensInThatSize) {
    setScreenResources("Xft.dpi:\t120\n");
    const Pixels bare = editor.window->pixels();
    open();
    ASSERT_TRUE(editor.runUntilStill(bare));
    const Pixels opened = editor.pixels();
    editor.close();
    setScreenResources("");
    follow();
    open();
    ASSERT_TRUE(choose(percent125));
    ASSERT_TRUE(editor.runUntil([&] { return size() == Size(405, 435); }));
    editor.scale = 1.25;
    editor.moveTo(nowhere.x, nowhere.y);
    EXPECT_TRUE(editor.runUntil([&] { return editor.pixels() == opened; }));
}

TEST_F(WindowSize, ControlsAnswerWhereTheyAreSeenAfterAChange) {
    follow();
    open();
    ASSERT_TRUE(choose(percent200));
    ASSERT_TRUE(editor.runUntil([&] { return size().first == 648; }));
    editor.scale = 2.0;
    editor.click(93, 257);
    EXPECT_EQ(editor.parameter(5), 0.0F);
}

TEST_F(WindowSize, LeavesNothingOfALargerPictureWhereTheHostKeepsItsRoom) {
    follow();
    setScreenResources("Xft.dpi:\t144\n");
    open();
    editor.host.answer(audioMasterSizeWindow, [](const HostCall&) { return 1; });
    ASSERT_TRUE(choose(percent100));
    ASSERT_TRUE(editor.runUntil([&] { return size() == Size(324, 348); }));
    const auto child = editor.window->children().front();
    const auto width = [&] {
        XWindowAttributes attributes{};
        XGetWindowAttributes(editor.window->connection(), child, &attributes);
        return attributes.width;
    };
    ASSERT_TRUE(editor.runUntil([&] { return width() == 324; }));
    XResizeWindow(editor.window->connection(), child, 486, 522);
    EXPECT_TRUE(editor.runUntil([&] {
        const Pixels picture = editor.pixels();
        const auto isBlack = [](std::uint32_t pixel) { return pixel == 0; };
        return std::ranges::all_of(picture.part(324, 0, 486, 522).rgb, isBlack) &&
               std::ranges::all_of(picture.part(0, 348, 324, 522).rgb, isBlack) &&
               !isBlack(picture.at(320, 340));
    }));
}

TEST_F(WindowSize, OfAHostThatDoesNotSayThatItFollowsCountsFromTheNextOpening) {
    for (const VstIntPtr answer : {0, -1}) {
        follow(answer, 1);
        open();
        ASSERT_TRUE(choose(answer == 0 ? percent150 : percent200));
        EXPECT_EQ(editor.host.count(audioMasterSizeWindow), 0U);
        EXPECT_EQ(size(), answer == 0 ? Size(324, 348) : Size(486, 522));
        editor.close();
        EXPECT_EQ(size(), answer == 0 ? Size(486, 522) : Size(648, 696));
    }
}

TEST_F(WindowSize, ThatTheHostRefusesCountsFromTheNextOpening) {
    follow(1, 0);
    open();
    ASSERT_TRUE(choose(percent150));
    EXPECT_TRUE(editor.runUntil([&] { return editor.host.count(audioMasterSizeWindow) == 1; }));
    EXPECT_EQ(size(), Size(324, 348));
    editor.close();
    EXPECT_EQ(size(), Size(486, 522));
}

TEST_F(WindowSize, SurvivesAHostThatClosesAndOpensTheWindowForIt) {
    follow();
    editor.host.answer(audioMasterSizeWindow, [this](const HostCall& call) {
        editor.effect->dispatch(effEditClose);
        editor.window->resize(call.index, static_cast<int>(call.value));
        editor.effect->dispatch(effEditOpen, 0, 0, editor.window->asParent());
        return 0;
    });
    open();
    ASSERT_TRUE(choose(percent200));
    EXPECT_TRUE(editor.runUntil(
        [&] { return size() == Size(648, 696) && editor.window->children().size() == 1; }));
}

TEST_F(WindowSize, IsKeptForAllInstances) {
    open();
    ASSERT_TRUE(choose(percent175));
    mirelon::hosting::RecordingHost host;
    const mirelon::hosting::Effect other(EditorHost::module(), host);
    ERect* rect = nullptr;
    other.dispatch(effEditGetRect, 0, 0, &rect);
    EXPECT_EQ(rect->right - rect->left, 567);
}

TEST_F(WindowSize, WinsOverTheDesktopsUntilThatIsChosenAgain) {
    setScreenResources("Xft.dpi:\t192\n");
    follow();
    open();
    EXPECT_EQ(size(), Size(648, 696));
    ASSERT_TRUE(choose(percent100));
    EXPECT_TRUE(editor.runUntil([&] { return size() == Size(324, 348); }));
    editor.scale = 1.0;
    ASSERT_TRUE(choose(asTheDesktop));
    EXPECT_TRUE(editor.runUntil([&] { return size() == Size(648, 696); }));
}

TEST_F(WindowSize, OfTheEnvironmentWinsOverTheChosenOne) {
    setenv("MIRELON_SCALE", "1.5", 1);
    follow();
    open();
    ASSERT_TRUE(choose(percent200));
    EXPECT_EQ(editor.host.count(audioMasterSizeWindow), 0U);
    editor.close();
    EXPECT_EQ(size(), Size(486, 522));
    unsetenv("MIRELON_SCALE");
    EXPECT_EQ(size(), Size(648, 696));
}

TEST_F(WindowSize, IsNotAskedForByOtherClicks) {
    open();
    const Pixels before = editor.pixels();
    editor.click(title.x, title.y);
    editor.click(nowhere.x, nowhere.y, 3);
    // What is shown later than a menu would be.
    editor.effect->setParameter(0, 0.9F);
    ASSERT_TRUE(editor.runUntilStill(before));
    editor.effect->setParameter(0, 0.5F);
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->pixels() == before; }));
}

TEST_F(WindowSize, MenuMayBeOpenWhenTheWindowCloses) {
    open();
    const Pixels before = editor.pixels();
    editor.click(title.x, title.y, 3);
    ASSERT_TRUE(editor.runUntilStill(before));
    editor.close();
    EXPECT_TRUE(editor.window->becomesEmpty());
    open();
    EXPECT_TRUE(choose(percent150));
}

} // namespace
