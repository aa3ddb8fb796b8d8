// How often an open editor wakes its host's main loop, and how soon it answers
// the user.
#include "tests/editor/editorhost.h"
#include "tests/support/mainloop.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <thread>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

// How often this thread has slept.
long sleeps() {
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
}

TEST(EditorWakeUps, AStillEditorWakesTheMainLoopOnceATickOfItsIdleTimer) {
    EditorHost editor(Drive::glib);
    const Pixels empty = editor.window->pixels();
    editor.open();
    ASSERT_TRUE(editor.runUntilStill(empty));
    const long before = sleeps();
    const int wakeUps = iterateFor(1s);
    RecordProperty("wakeUps", wakeUps);
    RecordProperty("sleeps", static_cast<int>(sleeps() - before));
    EXPECT_LE(wakeUps, 40);
    EXPECT_GE(wakeUps, 20);
    // It does not wait for the X server either.
    EXPECT_LE(sleeps() - before, 50);
}

// A slider that is being dragged, by steps that are further apart than the
// toolkit's drawing. The X server may be late now and then on a busy machine.
class DraggedSlider : public testing::Test {
  protected:
    static constexpr int steps = 10;
    static constexpr int stepsInTime = 7;

    DraggedSlider() {
        editor.open();
        editor.moveTo(100, 62);
        editor.press();
    }
    ~DraggedSlider() override { editor.release(); }

    // Moves on and lets the main loop take one turn.
    void step() {
        position += 5;
        editor.window->moveTo(position * editor.scale, 62 * editor.scale);
        std::this_thread::sleep_for(5ms);
        iterateOnce();
    }

    EditorHost editor{Drive::glib};
    double position = 100;
};

TEST_F(DraggedSlider, ReachesTheHostInOneTurnOfTheMainLoop) {
    int inTime = 0;
    for (int i = 0; i < steps; ++i) {
        editor.run(30ms);
        const auto before = editor.host.count(audioMasterAutomate);
        step();
        inTime += editor.host.count(audioMasterAutomate) > before ? 1 : 0;
    }
    EXPECT_GE(inTime, stepsInTime);
}

TEST_F(DraggedSlider, IsDrawnInTheSameTurnOfTheMainLoop) {
    int inTime = 0;
    for (int i = 0; i < steps; ++i) {
        editor.run(30ms);
        const Pixels before = editor.window->pixels();
        step();
        std::this_thread::sleep_for(5ms); // the server's drawing
        inTime += editor.window->pixels() != before ? 1 : 0;
    }
    EXPECT_GE(inTime, stepsInTime);
}

TEST(EditorWakeUps, AMainLoopOnAnotherThreadSleepsWhileEventsArePending) {
    EditorHost editor;
    editor.open();
    editor.moveTo(100, 62);
    editor.press();
    const auto before = editor.host.count(audioMasterAutomate);
    const Pixels picture = editor.window->pixels();
    for (int i = 1; i <= 10; ++i)
        editor.window->moveTo((100 + 5 * i) * editor.scale, 62 * editor.scale);
    int wakeUps = 0;
    std::thread([&] { wakeUps = iterateFor(500ms); }).join();
    EXPECT_LE(wakeUps, 10);
    EXPECT_EQ(editor.host.count(audioMasterAutomate), before);
    EXPECT_EQ(editor.window->pixels(), picture);
    editor.run(20ms);
    EXPECT_GT(editor.host.count(audioMasterAutomate), before);
    editor.release();
}

} // namespace
