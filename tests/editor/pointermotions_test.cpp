// What it costs the host's process that the pointer moves over the window.
#include "tests/editor/editorhost.h"

#include <gtest/gtest.h>
#include <malloc.h>

using namespace mirelon::test;

namespace {

// Each is handed to the editor before the next, so that none is lost.
void movePointer(EditorHost& editor, int motions) {
    for (int i = 0; i < motions; ++i) {
        editor.window->moveTo(10 + i % 200, 300);
        editor.effect->dispatch(effEditIdle);
    }
}

// What is written at the pointer fills caches of fonts and text, once and whenever the
// time for it has come; what is left behind is left in every round.
TEST(PointerMotions, LeaveNoMemoryBehind) {
    EditorHost editor;
    editor.open();
    movePointer(editor, 500);
    std::size_t before = mallinfo2().uordblks;
    if (before == 0)
        GTEST_SKIP() << "this allocator does not count";
    constexpr int motions = 1000;
    constexpr std::size_t leak = motions * 4;
    bool grown = true;
    for (int round = 0; grown && round < 4; ++round) {
        movePointer(editor, motions);
        const std::size_t after = mallinfo2().uordblks;
        grown = after >= before + leak;
        before = after;
    }
    EXPECT_FALSE(grown) << "in each round";
}

} // namespace
