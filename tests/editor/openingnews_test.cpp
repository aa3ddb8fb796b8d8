// News for the editor in the middle of its opening.
#include "tests/editor/editorhost.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <thread>
#include <utility>

using namespace mirelon::test;

namespace {

// Runs once, when this thread has allocated so many times more; the plug-in's
// allocations count as well.
thread_local int allocationsLeft = 0;
thread_local std::function<void()>* interruption = nullptr;

void* allocated(std::size_t size) noexcept {
    if (allocationsLeft > 0 && --allocationsLeft == 0)
        (*interruption)();
    return std::malloc(size != 0 ? size : 1);
}

} // namespace

void* operator new(std::size_t size) {
    if (void* memory = allocated(size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

// How often this thread allocates while the editor opens.
int allocationsOfOpening(EditorHost& editor) {
    constexpr int many = 1000000;
    std::function<void()> nothing = [] {};
    interruption = &nothing;
    allocationsLeft = many;
    editor.effect->dispatch(effEditOpen, 0, 0, editor.window->asParent());
    return many - std::exchange(allocationsLeft, 0);
}

TEST(EditorOpening, LosesNothingThatAnotherThreadSetsMeanwhile) {
    EditorHost editor;
    editor.effect->setParameter(0, 1.0F);
    editor.open(); // the first opening allocates more than later ones
    editor.close();
    const int allocations = allocationsOfOpening(editor);
    ASSERT_GT(allocations, 200);
    editor.moveTo(150, 305);
    const Pixels expected = editor.pixels();

    std::function<void()> automation = [&] {
        std::thread([&] { editor.effect->setParameter(0, 1.0F); }).join();
    };
    interruption = &automation;
    // Not every opening allocates as often: the last few may come too late.
    const int last = allocations * 9 / 10;
    for (int at = 1; at < last; at += 16) {
        editor.close();
        editor.effect->setParameter(0, 0.0F);
        allocationsLeft = at;
        editor.effect->dispatch(effEditOpen, 0, 0, editor.window->asParent());
        ASSERT_EQ(allocationsLeft, 0) << "of " << allocations;
        EXPECT_EQ(editor.pixels(), expected) << "at allocation " << at << " of " << allocations;
    }
}

} // namespace
