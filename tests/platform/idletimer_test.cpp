#include "platform/idletimer.h"

#include "tests/support/pumping.h"

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
    // Turns it until `reached`; false when that takes too long.
    static bool turnUntil(const std::function<bool()>& reached, bool pump, bool glib) {
        const auto end = std::chrono::steady_clock::now() + 20s;
        while (!reached() && std::chrono::steady_clock::now() < end)
            turn(1ms, pump, glib);
        return reached();
    }
    SilentEffect effect;
    CountingEditor& editor = *new CountingEditor(effect);
};

struct Destroy {
    void operator()(IdleTimer* timer) const { destroyTimer(timer); }
};
using Timer = std::unique_ptr<IdleTimer, Destroy>;

// A busy machine may make a tick late and leave some out, and never makes one more.
TEST_F(IdleTimerTest, TicksThirtyTimesASecondByEitherTriggerOrBoth) {
    constexpr auto interval = std::chrono::duration<double>(1.0 / 30.0);
    for (const auto& [pump, glib] : {std::pair{true, false}, {false, true}, {true, true}}) {
        const Timer timer(createTimer(&editor));
        editor.ticks = 0;
        const auto begin = std::chrono::steady_clock::now();
        int inTime = 0;
        auto last = begin;
        editor.onTick = [&] {
            const auto now = std::chrono::steady_clock::now();
            inTime += now - last < 1.5 * interval ? 1 : 0;
            last = now;
        };
        ASSERT_TRUE(turnUntil([&] { return inTime >= 15; }, pump, glib));
        EXPECT_LE(editor.ticks, (last - begin) / interval + 0.5);
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
    ASSERT_TRUE(test::pumpUntil([&] { return editor.ticks > 0; }));
    turn(70ms, true, false);
    EXPECT_EQ(editor.ticks, 1);
}

TEST_F(IdleTimerTest, IsServedOnItsOwnThreadOnly) {
    const Timer timer(createTimer(&editor));
    std::thread([] { turn(100ms, true, true); }).join();
    EXPECT_EQ(editor.ticks, 0);
    EXPECT_TRUE(test::pumpUntil([&] { return editor.ticks > 0; }));
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
    ASSERT_TRUE(test::pumpUntil([&] { return editor.ticks >= 2; }));
    EXPECT_EQ(deepest, 1);
}

TEST_F(IdleTimerTest, TwoTimersTickSideBySide) {
    SilentEffect otherEffect;
    CountingEditor& other = *new CountingEditor(otherEffect);
    const Timer first(createTimer(&editor));
    const Timer second(createTimer(&other));
    EXPECT_TRUE(test::pumpUntil([&] { return editor.ticks > 0 && other.ticks > 0; }));
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
    EXPECT_TRUE(test::pumpUntil([&] { return editor.ticks > 0; }));
}

} // namespace
