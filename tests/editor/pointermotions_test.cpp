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

TEST(PointerMotions, LeaveNoMemoryBehind) {
    EditorHost editor;
    editor.open();
    movePointer(editor, 500);
    const std::size_t before = mallinfo2().uordblks;
    if (before == 0)
        GTEST_SKIP() << "this allocator does not count";
    constexpr int motions = 4000;
    movePointer(editor, motions);
    EXPECT_LT(mallinfo2().uordblks, before + motions * 4);
}

} // namespace
