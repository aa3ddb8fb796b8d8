#include "platform/idletimer.h"

#include <chrono>
#include <functional>
#include <glib.h>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

using namespace mirelon;
using namespace std::chrono_literals;

namespace {

class SilentEffect : public AudioEffectX {
  public:
    SilentEffect()
        : AudioEffectX(nullptr, 1, 0) {}
    void processReplacing(float**, float**, VstInt32) override {}
};

// Attached to its effect, which deletes it.
class CountingEditor : public VSTGUI::AEffGUIEditor {
  public:
    explicit CountingEditor(AudioEffect& effect)
        : AEffGUIEditor(&effect) {}
    void idle() override {
        ++ticks;
        onTick();
    }
    int ticks = 0;
    std::function<void()> onTick = [] {};
};

class IdleTimerTest : public testing::Test {
  protected:
    // Turns the loop for so long, by the given triggers.
    static void turn(std::chrono::milliseconds time, bool pump, bool glib) {
        const auto end = std::chrono::steady_clock::now() + time;
        while (std::chrono::steady_clock::now() < end) {
            if (pump)
                RunLoop::instance().pump();
            if (glib)
                g_main_context_iteration(nullptr, FALSE);
            std::this_thread::sleep_for(2ms);
        }
    }
    SilentEffect effect;
    CountingEditor& editor = *new CountingEditor(effect);
};

struct Destroy {
    void operator()(IdleTimer* timer) const { destroyTimer(timer); }
};
using Timer = std::unique_ptr<IdleTimer, Destroy>;

TEST_F(IdleTimerTest, TicksThirtyTimesASecondByEitherTriggerOrBoth) {
    for (const auto& [pump, glib] : {std::pair{true, false}, {false, true}, {true, true}}) {
        const Timer timer(createTimer(&editor));
        editor.ticks = 0;
        turn(1s, pump, glib);
        EXPECT_LE(editor.ticks, 31);
        EXPECT_GE(editor.ticks, 20); // a busy machine may miss some
    }
}

TEST_F(IdleTimerTest, DoesNotCatchUpAfterAStandstill) {
    const Timer timer(createTimer(&editor));
    std::this_thread::sleep_for(200ms);
    for (int i = 0; i < 5; ++i)
        RunLoop::instance().pump();
    EXPECT_EQ(editor.ticks, 1);
}

TEST_F(IdleTimerTest, IsSilentOnceDestroyed) {
    Timer timer(createTimer(&editor));
    std::this_thread::sleep_for(50ms);
    timer.reset();
    RunLoop::instance().pump();
    turn(50ms, true, true);
    EXPECT_EQ(editor.ticks, 0);
}

TEST_F(IdleTimerTest, MayBeDestroyedInsideItsOwnTick) {
    Timer timer(createTimer(&editor));
    editor.onTick = [&] { timer.reset(); };
    turn(150ms, true, false);
    EXPECT_EQ(editor.ticks, 1);
}

TEST_F(IdleTimerTest, IsServedOnItsOwnThreadOnly) {
    const Timer timer(createTimer(&editor));
    std::thread([] { turn(100ms, true, true); }).join();
    EXPECT_EQ(editor.ticks, 0);
    turn(50ms, true, false);
    EXPECT_GT(editor.ticks, 0);
}

TEST_F(IdleTimerTest, APumpInsideATickDoesNothing) {
    const Timer timer(createTimer(&editor));
    int depth = 0;
    int deepest = 0;
    editor.onTick = [&] {
        deepest = std::max(deepest, ++depth);
        std::this_thread::sleep_for(40ms);
        RunLoop::instance().pump();
        --depth;
    };
    turn(150ms, true, false);
    EXPECT_EQ(deepest, 1);
}

TEST_F(IdleTimerTest, TwoTimersTickSideBySide) {
    SilentEffect otherEffect;
    CountingEditor& other = *new CountingEditor(otherEffect);
    const Timer first(createTimer(&editor));
    const Timer second(createTimer(&other));
    turn(100ms, true, false);
    EXPECT_GT(editor.ticks, 0);
    EXPECT_GT(other.ticks, 0);
}

TEST_F(IdleTimerTest, DoesNotTickWhileTheEditorsBelongToAnotherThread) {
    const RunLoop::User user;
    ASSERT_TRUE(static_cast<bool>(user));
    Timer timer;
    std::thread([&] { timer.reset(createTimer(&editor)); }).join();
    turn(100ms, true, true);
    EXPECT_EQ(editor.ticks, 0);
}

TEST_F(IdleTimerTest, ItsListenerIgnoresTicksOnceItHasNoEditor) {
    IdleTimerListener listener(&editor);
    listener.tick();
    ASSERT_EQ(editor.ticks, 1);
    listener.editor = nullptr;
    listener.tick();
    EXPECT_EQ(editor.ticks, 1);
}

TEST_F(IdleTimerTest, ToDestroyNoTimerLeavesTheOthersTicking) {
    const Timer timer(createTimer(&editor));
    destroyTimer(nullptr);
    turn(100ms, true, false);
    EXPECT_GT(editor.ticks, 0);
}

} // namespace
