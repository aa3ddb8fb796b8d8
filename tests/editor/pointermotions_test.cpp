// What it costs the host's process that the pointer moves over the window.
#include "tests/editor/editorhost.h"
#include "tests/support/memorygrowth.h"

#include <gtest/gtest.h>

using namespace mirelon::test;

namespace {

TEST(PointerMotions, LeaveNoMemoryBehind) {
    if (bytesInUse() == 0)
        GTEST_SKIP() << "this allocator does not count";
    EditorHost editor;
    editor.open();
    constexpr int motions = 1000;
    EXPECT_FALSE(growsInEveryRound(motions * 4, [&] {
        // Each is handed to the editor before the next, so that none is lost.
        for (int i = 0; i < motions; ++i) {
            editor.window->moveTo(10 + i % 200, 300);
            editor.effect->dispatch(effEditIdle);
        }
    }));
}

} // namespace
