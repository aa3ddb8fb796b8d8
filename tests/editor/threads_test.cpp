// What threads that do not own an open editor tell it, and the pace of its idle.
#include "tests/editor/editorhost.h"

#include <atomic>
#include <glib.h>
#include <gtest/gtest.h>
#include <thread>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

template <typename Work>
void onAnotherThread(Work work) {
    std::thread(work).join();
}

// Whether the window comes to look otherwise; how many turns of the host's loop
// the drawing takes depends on the machine.
bool changesFrom(EditorHost& editor, const Pixels& before) {
    return editor.runUntil([&] { return editor.window->pixels() != before; });
}

TEST(EditorThreads, AParameterSetElsewhereShowsAtTheNextIdle) {
    EditorHost editor;
    editor.open();
    for (VstInt32 parameter = 0; parameter < 9; ++parameter) {
        const Pixels before = editor.pixels();
        onAnotherThread(
            [&] { editor.effect->setParameter(parameter, parameter == 5 ? 0.0F : 1.0F); });
        EXPECT_EQ(editor.window->pixels(), before) << parameter;
        EXPECT_TRUE(changesFrom(editor, before)) << parameter;
    }
}

TEST(EditorThreads, ANameGivenElsewhereShowsAtTheNextIdle) {
    EditorHost editor;
    editor.open();
    const Pixels before = editor.pixels();
    onAnotherThread([&] { editor.effect->setProgramName("elsewhere"); });
    EXPECT_TRUE(changesFrom(editor, before));
}

TEST(EditorThreads, ABankGivenElsewhereShowsAtTheNextIdle) {
    EditorHost editor;
    editor.open();
    editor.moveTo(150, 305);
    const Pixels first = editor.pixels();
    const auto chunk = editor.effect->chunk();
    editor.click(243, 326);
    editor.moveTo(150, 305);
    ASSERT_NE(editor.pixels(), first);
    onAnotherThread([&] { editor.effect->setChunk(chunk); });
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->pixels() == first; }));
}

TEST(EditorThreads, IdleFromElsewhereDoesNotTouchTheWindow) {
    EditorHost editor;
    editor.open();
    editor.run(100ms);
    const Pixels before = editor.window->pixels();
    onAnotherThread([&] {
        editor.effect->setParameter(0, 1.0F);
        for (int i = 0; i < 20; ++i) {
            editor.effect->dispatch(effEditIdle);
            std::this_thread::sleep_for(5ms);
        }
    });
    EXPECT_EQ(editor.window->pixels(), before);
    EXPECT_TRUE(changesFrom(editor, before));
}

TEST(EditorThreads, GlibOnAnotherThreadLeavesTheEditorToTheHostsIdle) {
    EditorHost editor;
    editor.open();
    std::atomic<bool> done{false};
    std::thread glib([&] {
        while (!done) {
            g_main_context_iteration(nullptr, FALSE);
            std::this_thread::sleep_for(1ms);
        }
    });
    const Pixels before = editor.pixels();
    editor.effect->setParameter(0, 1.0F);
    EXPECT_TRUE(changesFrom(editor, before));
    done = true;
    glib.join();
}

TEST(EditorThreads, AudioAutomationAndEditorRunSideBySide) {
    EditorHost editor;
    editor.effect->setBlockSize(256);
    editor.effect->resume();
    editor.open();
    std::atomic<bool> done{false};
    std::thread audio([&] {
        std::vector<float> left(256, 0.25F);
        std::vector<float> right(256, -0.125F);
        float* channels[] = {left.data(), right.data()};
        for (int i = 0; !done; ++i) {
            editor.effect->setParameter(i % 9, static_cast<float>(i % 11) / 10.0F);
            editor.effect->process(channels, channels, 256);
            std::this_thread::sleep_for(1ms);
        }
    });
    std::thread command([&] {
        for (int i = 0; !done; ++i) {
            editor.effect->setProgramName("name " + std::to_string(i));
            editor.effect->setChunk(editor.effect->chunk());
            std::this_thread::sleep_for(3ms);
        }
    });
    for (int i = 0; i < 5; ++i) {
        editor.drag(100, 62, 200, 62);
        editor.click(243, 326);
        editor.click(260, 319);
        editor.close();
        editor.open();
    }
    done = true;
    audio.join();
    command.join();
    EXPECT_GT(editor.host.count(audioMasterAutomate), 0U);
}

TEST(EditorThreads, TheWindowMayCloseElsewhereWhileItsOwnThreadSetsParameters) {
    EditorHost editor;
    for (int round = 0; round < 100; ++round) {
        editor.effect->dispatch(effEditOpen, 0, 0, editor.window->asParent());
        std::atomic<bool> closed{false};
        std::thread command([&] {
            editor.close();
            closed = true;
        });
        for (int i = 0; !closed; ++i) {
            editor.effect->setParameter(i % 9, static_cast<float>(i % 11) / 10.0F);
            editor.effect->setProgramName(i % 2 == 0 ? "one" : "other");
            editor.effect->setProgram(i % 11);
        }
        command.join();
        EXPECT_TRUE(editor.window->becomesEmpty());
    }
}

TEST(EditorThreads, WithoutAnOpenEditorNothingWaitsInTheMainContext) {
    EditorHost editor(Drive::glib);
    editor.open();
    editor.close();
    int timeout = 0;
    gint priority = 0;
    GMainContext* context = g_main_context_default();
    ASSERT_TRUE(g_main_context_acquire(context));
    g_main_context_prepare(context, &priority);
    g_main_context_query(context, G_MAXINT, &timeout, nullptr, 0);
    g_main_context_release(context);
    EXPECT_EQ(timeout, -1);
}

} // namespace
