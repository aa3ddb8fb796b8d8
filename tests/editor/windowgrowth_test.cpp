// What a long session in front of the window leaves behind in the host's process.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"
#include "tests/support/memorygrowth.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <string>

using namespace mirelon::test;

namespace {

class WindowGrowth : public testing::Test {
  protected:
    void SetUp() override {
        if (bytesInUse() == 0)
            GTEST_SKIP() << "this allocator does not count";
        editor.host.forgetCalls();
        editor.open();
        editor.moveTo(nowhere.x, nowhere.y);
    }
    Pixels titleTextShown() const {
        return editor.window->pixels().part(titleTextLeft, 0, titleTextRight, titleHeight);
    }
    // Each is handed to the editor before the next.
    void key(unsigned long keysym) {
        editor.window->keyDown(keysym);
        editor.effect->dispatch(effEditIdle);
        editor.window->keyUp(keysym);
        editor.effect->dispatch(effEditIdle);
    }
    void type(std::string_view text) {
        for (const char c : text)
            key(static_cast<unsigned long>(static_cast<unsigned char>(c)));
    }
    // The host keeps no list of its calls meanwhile.
    bool grows(int times, std::size_t leakOfOne, const std::function<void(int)>& once) {
        return growsInEveryRound(static_cast<std::size_t>(times) * leakOfOne, [&] {
            for (int i = 0; i < times; ++i)
                once(i);
            editor.host.forgetCalls();
        });
    }

    EditorHost editor;
};

TEST_F(WindowGrowth, IsNoneWhileNamesAreTyped) {
    constexpr std::size_t leak = 16;
    EXPECT_FALSE(grows(20, leak, [&](int i) {
        const std::string name = "name" + std::to_string(10 + i);
        editor.click(nameField.x, nameField.y);
        type("x");
        type(name);
        key(XK_Home);
        key(XK_Delete);
        key(XK_Return);
        ASSERT_TRUE(editor.runUntil([&] { return editor.effect->programName() == name; }));
        editor.moveTo(nowhere.x, nowhere.y);
    }));
}

TEST_F(WindowGrowth, IsNoneWhileValuesAreTyped) {
    constexpr std::size_t leak = 16;
    EXPECT_FALSE(grows(14, leak, [&](int i) {
        const Pixels closed = editor.window->pixels();
        editor.doubleClick(270, sliderPlaces[1].y);
        ASSERT_TRUE(editor.runUntil([&] { return editor.window->pixels() != closed; }));
        type(i % 2 == 0 ? "6" : "3");
        const float before = editor.parameter(1);
        key(XK_Return);
        ASSERT_TRUE(editor.runUntil([&] { return editor.parameter(1) != before; }));
        editor.moveTo(nowhere.x, nowhere.y);
    }));
}

TEST_F(WindowGrowth, IsNoneWhileThePartsAreExplained) {
    constexpr std::size_t leak = 16;
    const Pixels silent = titleTextShown();
    EXPECT_FALSE(grows(6, leak, [&](int i) {
        const SliderPlace& slider = sliderPlaces[i % 5];
        editor.moveTo(150, slider.y);
        ASSERT_TRUE(editor.runUntil([&] { return titleTextShown() != silent; }));
        editor.moveTo(nowhere.x, nowhere.y);
        ASSERT_TRUE(editor.runUntil([&] { return titleTextShown() == silent; }));
    }));
}

TEST_F(WindowGrowth, IsNoneWhileTheMenuOfSizesIsOpened) {
    constexpr std::size_t leak = 64;
    EXPECT_FALSE(grows(4, leak, [&](int) {
        const Pixels closed = editor.pixels();
        editor.click(title.x, title.y, 3);
        ASSERT_TRUE(editor.runUntilStill(closed));
        const Pixels open = editor.window->pixels();
        key(XK_Escape);
        ASSERT_TRUE(editor.runUntilStill(open));
        editor.moveTo(nowhere.x, nowhere.y);
    }));
}

} // namespace
