// Changes that reach the editor in the middle of its opening.
#include "tests/editor/editorhost.h"
#include "tests/support/allocations.h"

#include <gtest/gtest.h>
#include <thread>

using namespace mirelon::test;

namespace {

void openOnly(EditorHost& editor) {
    editor.effect->dispatch(effEditOpen, 0, 0, editor.window->asParent());
}

void setElsewhere(void* editor) {
    std::thread([&] { static_cast<EditorHost*>(editor)->effect->setParameter(0, 1.0F); }).join();
}

TEST(EditorOpening, LosesNothingThatAnotherThreadSetsMeanwhile) {
    EditorHost editor;
    editor.effect->setParameter(0, 1.0F);
    editor.open(); // the first opening allocates more than later ones
    editor.close();
    const long before = allocationsMade();
    openOnly(editor);
    const long allocations = allocationsMade() - before;
    ASSERT_GT(allocations, 200);
    editor.moveTo(150, 305);
    const Pixels expected = editor.pixels();

    // Not every opening allocates as often: the last few may come too late.
    for (long at = 1; at < allocations * 9 / 10; at += 16) {
        editor.close();
        editor.effect->setParameter(0, 0.0F);
        {
            const AtAllocation change(at, setElsewhere, &editor);
            openOnly(editor);
            ASSERT_TRUE(change.reached()) << at << " of " << allocations;
        }
        EXPECT_TRUE(editor.runUntil([&] { return editor.window->pixels() == expected; }))
            << "at allocation " << at << " of " << allocations;
    }
}

} // namespace
