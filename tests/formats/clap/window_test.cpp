// The CLAP plug-in's window in a host's, and what goes between it and the host.
#include "tests/formats/clap/clapwindowhost.h"
#include "tests/formats/formatwindow.h"

#include "tests/editor/positions.h"

#include <cmath>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;
using hosting::ClapExtensions;
using hosting::ClapTold;

INSTANTIATE_TEST_SUITE_P(Clap, FormatWindow, testing::Values([]() -> std::unique_ptr<WindowHost> {
                             return std::make_unique<ClapWindowHost>();
                         }));

// --- Opening and closing ---

TEST(ClapWindowLife, IsDrivenByOneTimerOfSixteenMillisecondsWhileItIsOpen) {
    ClapWindowHost host;
    EXPECT_EQ(host.plugIn.host.timerCount(), 0U);
    host.open();
    EXPECT_EQ(host.plugIn.host.timerIntervals(), std::vector<std::uint32_t>{16});
    EXPECT_EQ(host.plugIn.host.timerCount(), 1U);
    host.close();
    EXPECT_EQ(host.plugIn.host.timerCount(), 0U);
}

TEST(ClapWindowLife, HasNoScaleThatIsNone) {
    ClapWindowHost host;
    host.gui().create(host.plugin(), CLAP_WINDOW_API_X11, false);
    for (const double scale : {0.0, -1.0, std::nan(""), static_cast<double>(INFINITY)})
        EXPECT_FALSE(host.gui().set_scale(host.plugin(), scale)) << scale;
}

TEST(ClapWindowLife, IsOfX11AndEmbeddedOnly) {
    ClapWindowHost host;
    const clap_plugin_gui& gui = host.gui();
    const clap_plugin* const plugin = host.plugin();
    EXPECT_TRUE(gui.is_api_supported(plugin, "x11", false));
    for (const char* api : {"wayland", "win32", ""}) {
        EXPECT_FALSE(gui.is_api_supported(plugin, api, false)) << api;
        EXPECT_FALSE(gui.create(plugin, api, false)) << api;
    }
    EXPECT_FALSE(gui.is_api_supported(plugin, "x11", true));
    EXPECT_FALSE(gui.create(plugin, "x11", true));
    EXPECT_FALSE(gui.create(plugin, nullptr, false));
    const char* api = nullptr;
    bool floating = true;
    EXPECT_TRUE(gui.get_preferred_api(plugin, &api, &floating));
    EXPECT_STREQ(api, "x11");
    EXPECT_FALSE(floating);
    EXPECT_FALSE(gui.get_preferred_api(plugin, nullptr, &floating));
    EXPECT_FALSE(gui.get_preferred_api(plugin, &api, nullptr));
}

TEST(ClapWindowLife, KeepsItsSize) {
    ClapWindowHost host;
    host.open();
    const clap_plugin_gui& gui = host.gui();
    const clap_plugin* const plugin = host.plugin();
    EXPECT_FALSE(gui.can_resize(plugin));
    clap_gui_resize_hints hints{true, true, true, 3, 4};
    EXPECT_TRUE(gui.get_resize_hints(plugin, &hints));
    EXPECT_FALSE(hints.can_resize_horizontally || hints.can_resize_vertically);
    std::uint32_t width = 1000;
    std::uint32_t height = 10;
    EXPECT_TRUE(gui.adjust_size(plugin, &width, &height));
    EXPECT_EQ(width, 324U);
    EXPECT_EQ(height, 348U);
    EXPECT_TRUE(gui.set_size(plugin, 324, 348));
    EXPECT_FALSE(gui.set_size(plugin, 325, 348));
}

TEST(ClapWindowLife, TakesTheSizeThatTheUserChoosesOnlyWhenTheHostGivesIt) {
    for (const bool given : {true, false}) {
        ClapWindowHost host;
        host.plugIn.host.giveSizes(given);
        host.parent->resize(486, 522);
        const Pixels empty = host.parent->pixels();
        ASSERT_TRUE(host.open());
        ASSERT_TRUE(host.runUntilStill(empty));
        ASSERT_TRUE(host.chooseSizeOfOneAndAHalf());
        EXPECT_EQ(host.size(), given ? WindowHost::Size(486, 522) : WindowHost::Size(324, 348));
        EXPECT_EQ(host.gui().set_size(host.plugin(), 486, 522), given);
    }
}

TEST(ClapWindowLife, RefusesParentsThatAreNone) {
    ClapWindowHost host;
    const clap_plugin_gui& gui = host.gui();
    clap_window window{CLAP_WINDOW_API_X11, {}};
    window.x11 = host.parent->id();
    EXPECT_FALSE(gui.set_parent(host.plugin(), &window)) << "before it was created";
    ASSERT_TRUE(gui.create(host.plugin(), CLAP_WINDOW_API_X11, false));
    EXPECT_FALSE(gui.create(host.plugin(), CLAP_WINDOW_API_X11, false)) << "once more";
    EXPECT_FALSE(gui.set_parent(host.plugin(), nullptr));
    EXPECT_FALSE(gui.show(host.plugin()));
    window.x11 = 0x7FFFFF;
    EXPECT_FALSE(gui.set_parent(host.plugin(), &window));
    window.x11 = 0;
    EXPECT_FALSE(gui.set_parent(host.plugin(), &window));
    window = {"wayland", {}};
    window.x11 = host.parent->id();
    EXPECT_FALSE(gui.set_parent(host.plugin(), &window));
    EXPECT_TRUE(host.parent->becomesEmpty());
    EXPECT_EQ(host.plugIn.host.timerCount(), 0U);
}

TEST(ClapWindowLife, HidingTakesItAwayAndShowingBringsItBack) {
    ClapWindowHost host;
    host.open();
    EXPECT_TRUE(host.gui().hide(host.plugin()));
    EXPECT_TRUE(host.parent->becomesEmpty());
    EXPECT_TRUE(host.gui().show(host.plugin()));
    EXPECT_EQ(host.parent->children().size(), 1U);
    EXPECT_EQ(host.plugIn.host.timerCount(), 1U);
}

TEST(ClapWindowLife, EndsWithItsGuiThoughItWasNotHidden) {
    ClapWindowHost host;
    host.open();
    ASSERT_EQ(host.parent->children().size(), 1U);
    host.gui().destroy(host.plugin());
    EXPECT_TRUE(host.parent->becomesEmpty());
    EXPECT_EQ(host.plugIn.host.timerCount(), 0U);
}

TEST(ClapWindowLife, HostWithoutTimersGetsAWindowAllTheSame) {
    ClapWindowHost host(ClapExtensions::none);
    ASSERT_TRUE(host.open());
    EXPECT_EQ(host.parent->children().size(), 1U);
    host.close();
    EXPECT_TRUE(host.parent->becomesEmpty());
}

TEST(ClapWindowLife, TimersOfOthersAndAfterTheEndDoNothing) {
    ClapWindowHost host;
    host.open();
    const auto& timers =
        *host.plugIn.instance.extension<clap_plugin_timer_support>(CLAP_EXT_TIMER_SUPPORT);
    timers.on_timer(host.plugin(), 99);
    timers.on_timer(host.plugin(), CLAP_INVALID_ID);
    host.close();
    timers.on_timer(host.plugin(), 1);
}

TEST(ClapWindowLife, InstancesMayEndWithTheirWindowsOpen) {
    VirtualDisplay::start();
    const EmptyPreferences preferences;
    XWindow parent(editorWidth, editorHeight);
    for (int i = 0; i < 10; ++i) {
        ClapPlugIn plugIn;
        const clap_plugin_gui& gui = *plugIn.instance.window();
        clap_window window{CLAP_WINDOW_API_X11, {}};
        window.x11 = parent.id();
        ASSERT_TRUE(gui.create(&plugIn.instance.plugin(), CLAP_WINDOW_API_X11, false));
        ASSERT_TRUE(gui.set_parent(&plugIn.instance.plugin(), &window));
    }
    EXPECT_TRUE(parent.becomesEmpty());
}

// --- From the user to the host ---

TEST(ClapWindowGesture, WhileNothingPlaysAsksForAFlushAndWaitsForIt) {
    ClapWindowHost host;
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    ASSERT_TRUE(host.runUntil([&] { return host.plugIn.value(kParamGain) != 0.5; }));
    EXPECT_GT(host.plugIn.host.flushRequests(), 0);
    hosting::ClapOutputEvents told;
    host.plugIn.instance.flush(nullptr, told.list());
    ASSERT_GE(told.told().size(), 3U);
    EXPECT_EQ(told.told().front(), (ClapTold{CLAP_EVENT_PARAM_GESTURE_BEGIN, kParamGain, 0.0}));
    EXPECT_EQ(told.told().back(), (ClapTold{CLAP_EVENT_PARAM_GESTURE_END, kParamGain, 0.0}));
}

TEST(ClapWindowGesture, WaitsForAHostThatHasNoRoomForItsEvents) {
    ClapWindowHost host;
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    ASSERT_TRUE(host.runUntil([&] { return host.plugIn.value(kParamGain) != 0.5; }));
    std::vector<ClapTold> all;
    for (int i = 0; i < 100; ++i) {
        hosting::ClapOutputEvents one(1);
        host.plugIn.instance.flush(nullptr, one.list());
        all.insert(all.end(), one.told().begin(), one.told().end());
    }
    ASSERT_GE(all.size(), 3U);
    EXPECT_EQ(all.front().type, CLAP_EVENT_PARAM_GESTURE_BEGIN);
    EXPECT_EQ(all.back().type, CLAP_EVENT_PARAM_GESTURE_END);
}

TEST(ClapWindowGesture, IsNoRescanAndOfAnotherPresetIsOne) {
    ClapWindowHost host;
    host.play();
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    ASSERT_TRUE(host.runUntil([&] { return host.gestures() == "b1e1"; }));
    EXPECT_EQ(host.plugIn.host.rescans(), 0);
    EXPECT_EQ(host.plugIn.host.dirtyMarks(), 0);
    host.click(rockerRight.x, rockerRight.y);
    EXPECT_TRUE(host.runUntil([&] { return host.plugIn.host.rescans() > 0; }));
    EXPECT_GT(host.plugIn.host.dirtyMarks(), 0);
}

// A gesture that the host has not taken yet, and behind it a step to another preset.
void dragAndStep(ClapWindowHost& host) {
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    host.click(rockerRight.x, rockerRight.y);
    ASSERT_TRUE(host.runUntil([&] { return host.plugIn.host.dirtyMarks() > 0; }));
    host.run();
}

// Otherwise the host would take the older values for newer ones.
TEST(ClapWindowGesture, IsHeardBeforeTheRescanAfterIt) {
    ClapWindowHost host;
    ASSERT_NO_FATAL_FAILURE(dragAndStep(host));
    EXPECT_EQ(host.plugIn.host.rescans(), 0);
    hosting::ClapOutputEvents told;
    host.plugIn.instance.flush(nullptr, told.list());
    EXPECT_FALSE(told.told().empty());
    EXPECT_TRUE(host.runUntil([&] { return host.plugIn.host.rescans() == 1; }));
}

TEST(ClapWindowGesture, IsHeardBeforeTheRescanThoughTheWindowHasClosed) {
    ClapWindowHost host;
    ASSERT_NO_FATAL_FAILURE(dragAndStep(host));
    host.close();
    ASSERT_EQ(host.plugIn.host.rescans(), 0);
    hosting::ClapOutputEvents told;
    host.plugIn.instance.flush(nullptr, told.list());
    EXPECT_TRUE(host.runUntil([&] { return host.plugIn.host.rescans() == 1; }));
}

TEST(ClapWindowGesture, OfAnotherPresetIsToldAfterAStateWasLoadedToo) {
    ClapWindowHost host;
    host.open();
    host.run();
    ASSERT_TRUE(host.plugIn.instance.load(*host.plugIn.instance.save()));
    const int before = host.plugIn.host.rescans();
    host.click(rockerRight.x, rockerRight.y);
    EXPECT_TRUE(host.runUntil([&] { return host.plugIn.host.rescans() > before; }));
    EXPECT_GT(host.plugIn.host.dirtyMarks(), 0);
}

// However long the host takes for the callback that it was asked for.
TEST(ClapWindowGesture, IsToldByTheWindowsTimerToo) {
    ClapWindowHost host;
    host.open();
    host.run();
    host.parent->moveTo(rockerRight.x, rockerRight.y);
    host.parent->press();
    host.parent->release();
    const auto& timers =
        *host.plugIn.instance.extension<clap_plugin_timer_support>(CLAP_EXT_TIMER_SUPPORT);
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (host.plugIn.host.rescans() == 0 && std::chrono::steady_clock::now() < end)
        timers.on_timer(host.plugin(), 1); // the window's is the first
    EXPECT_EQ(host.plugIn.host.rescans(), 1);
}

TEST(ClapWindowGesture, StoresDefaultsThatTheNextInstanceStartsFrom) {
    ClapWindowHost host;
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    host.doubleClick(defaultPreset.x, defaultPreset.y);
    EXPECT_TRUE(host.runUntil([] {
        const ClapPlugIn next;
        return std::abs(next.value(kParamGain) - 0.75) < 0.02;
    }));
}

// --- From the host to the window ---

TEST(ClapWindowFollows, AStateThatTheHostLoads) {
    ClapWindowHost host;
    host.open();
    host.moveTo(10, 10);
    const auto first = host.plugIn.instance.save();
    // Below the top line, where an explanation may come at any time.
    const auto parameters = [&] {
        const Pixels all = host.pixels();
        return all.part(0, titleBottom, all.width, all.height);
    };
    const Pixels shown = parameters();
    host.click(rockerRight.x, rockerRight.y);
    host.moveTo(10, 10);
    ASSERT_TRUE(host.runUntil([&] { return parameters() != shown; }));
    ASSERT_TRUE(host.plugIn.instance.load(*first));
    EXPECT_TRUE(host.runUntil([&] { return parameters() == shown; }));
}

TEST(ClapWindowFollows, TheMetersOfWhatIsPlayed) {
    ClapWindowHost host;
    host.plugIn.instance.activate(48000.0, 512);
    host.open();
    const auto playedWith = [&](float right) {
        std::vector<float> left(512);
        std::vector<float> other(512);
        for (std::size_t i = 0; i < left.size(); ++i) {
            left[i] = std::sin(static_cast<float>(i) * 0.1F);
            other[i] = left[i] * right;
        }
        float* const channels[] = {left.data(), other.data()};
        std::vector<float> outLeft(512);
        std::vector<float> outRight(512);
        float* const outputs[] = {outLeft.data(), outRight.data()};
        for (int block = 0; block < 200; ++block)
            host.plugIn.instance.process(channels, outputs, 512);
    };
    playedWith(1.0F);
    const Pixels mono = host.pixels();
    playedWith(-1.0F);
    EXPECT_TRUE(host.runUntil([&] { return host.parent->pixels() != mono; }));
    // They fall when it plays no more.
    host.run();
    const Pixels playing = host.pixels();
    host.plugIn.instance.deactivate();
    EXPECT_TRUE(host.runUntil([&] { return host.parent->pixels() != playing; }));
}

} // namespace
} // namespace mirelon::test
