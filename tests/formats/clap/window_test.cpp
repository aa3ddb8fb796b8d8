// The CLAP plug-in's window in a host's, and what goes between it and the host.
#include "tests/formats/clap/clapwindowhost.h"

#include "presetsystem/chunkimage.h"
#include "processor/core/factorypresets.h"
#include "tests/editor/positions.h"

#include <X11/keysym.h>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;
using hosting::ClapExtensions;
using hosting::ClapTold;

constexpr std::uint32_t hostGrey = 0x808080;
constexpr int gainRow = 94;

std::ptrdiff_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

ChunkImage bankOf(const ClapWindowHost& host) {
    const auto state = host.plugIn.instance.save();
    ChunkImage bank{};
    EXPECT_EQ(state.value().size(), bank.size());
    std::ranges::copy(*state, bank.begin());
    return bank;
}

// --- Opening and closing ---

TEST(ClapWindowLife, OpensInTheHostsWindowInItsOwnSize) {
    ClapWindowHost host;
    ASSERT_TRUE(host.open());
    EXPECT_EQ(host.parent->children().size(), 1U);
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    ASSERT_TRUE(host.gui().get_size(host.plugin(), &width, &height));
    EXPECT_EQ(width, 324U);
    EXPECT_EQ(height, 348U);
    EXPECT_TRUE(host.runUntil([&] {
        const Pixels picture = host.parent->pixels();
        return picture.at(0, 0) != hostGrey && picture.at(323, 347) != hostGrey;
    }));
}

TEST(ClapWindowLife, IsDrivenByOneTimerOfSixteenMillisecondsWhileItIsOpen) {
    ClapWindowHost host;
    EXPECT_EQ(host.plugIn.host.timerCount(), 0U);
    host.open();
    EXPECT_EQ(host.plugIn.host.timerIntervals(), std::vector<std::uint32_t>{16});
    EXPECT_EQ(host.plugIn.host.timerCount(), 1U);
    host.close();
    EXPECT_EQ(host.plugIn.host.timerCount(), 0U);
}

TEST(ClapWindowLife, OpensInTheScaleThatTheHostAsksFor) {
    ClapWindowHost host;
    ASSERT_TRUE(host.open(2.0));
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    host.gui().get_size(host.plugin(), &width, &height);
    EXPECT_EQ(width, 648U);
    EXPECT_EQ(height, 696U);
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

// In the menu of the window's top line, which opens where it is clicked.
void chooseSizeOfOneAndAHalf(ClapWindowHost& host) {
    host.moveTo(60, 9);
    const std::uint32_t closed = host.pixels().at(100, 150);
    host.parent->press(3);
    host.run();
    host.parent->release(3);
    ASSERT_TRUE(host.runUntil([&] { return host.pixels().at(100, 150) != closed; }));
    host.run(600ms); // it takes clicks once it has come up
    host.click(80, 58);
    EXPECT_TRUE(host.runUntil([&] { return !host.plugIn.host.sizesAsked().empty(); }));
}

TEST(ClapWindowLife, TakesTheSizeThatTheUserChoosesWhenTheHostGivesIt) {
    for (const bool given : {true, false}) {
        ClapWindowHost host;
        host.plugIn.host.giveSizes(given);
        host.parent->resize(486, 522);
        ASSERT_TRUE(host.open());
        host.run();
        chooseSizeOfOneAndAHalf(host);
        EXPECT_EQ(host.plugIn.host.sizesAsked(),
                  (std::vector<hosting::ClapHost::Size>{{486, 522}}));
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        ASSERT_TRUE(host.gui().get_size(host.plugin(), &width, &height));
        EXPECT_EQ(width, given ? 486U : 324U);
        EXPECT_EQ(host.gui().set_size(host.plugin(), 486, 522), given);
        host.close();
        ASSERT_TRUE(host.open(2.0)); // the user's choice wins over the host's scale
        ASSERT_TRUE(host.gui().get_size(host.plugin(), &width, &height));
        EXPECT_EQ(width, 486U);
        EXPECT_EQ(height, 522U);
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

TEST(ClapWindowLife, SixtyOpeningsWithTwoAtOnceInEveryThirdLeaveNothingBehind) {
    ClapWindowHost host;
    ClapWindowHost other;
    host.play();
    ASSERT_TRUE(host.open());
    host.run();
    host.close();
    const auto before = openFiles();
    for (int i = 0; i < 60; ++i) {
        ASSERT_TRUE(host.open()) << i;
        const bool two = i % 3 == 0;
        if (two) {
            ASSERT_TRUE(other.open()) << i;
            other.run(20ms);
        }
        host.run(30ms);
        ASSERT_EQ(host.parent->children().size(), 1U) << i;
        if (two && i % 2 == 0)
            other.close();
        host.close();
        other.close();
        ASSERT_TRUE(host.parent->becomesEmpty()) << i;
    }
    EXPECT_EQ(openFiles(), before);
    host.open();
    EXPECT_TRUE(host.runUntil([&] { return host.parent->pixels().at(10, 10) != hostGrey; }));
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

TEST(ClapWindowLife, TheHostsWindowMayGoFirst) {
    ClapWindowHost host;
    host.open();
    host.run();
    host.parent->destroy();
    host.run();
    host.plugIn.set(kParamGain, 0.75);
    host.run();
    host.close();
    host.parent = std::make_unique<XWindow>(editorWidth, editorHeight);
    EXPECT_TRUE(host.open());
}

// --- From the user to the host ---

TEST(ClapWindowGesture, IsABeginningItsValuesAndAnEnd) {
    ClapWindowHost host;
    host.play();
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    ASSERT_TRUE(host.runUntil([&] {
        return !host.told.empty() && host.told.back().type == CLAP_EVENT_PARAM_GESTURE_END;
    }));
    ASSERT_GE(host.told.size(), 3U);
    EXPECT_EQ(host.told, host.toldOf(kParamGain));
    EXPECT_EQ(host.told.front().type, CLAP_EVENT_PARAM_GESTURE_BEGIN);
    for (std::size_t i = 1; i + 1 < host.told.size(); ++i)
        EXPECT_EQ(host.told[i].type, CLAP_EVENT_PARAM_VALUE);
    const double last = host.told[host.told.size() - 2].value;
    EXPECT_NEAR(last, 0.75, 0.02);
    EXPECT_EQ(last, host.plugIn.value(kParamGain));
    EXPECT_EQ(host.plugIn.host.rescans(), 0);
    EXPECT_EQ(host.plugIn.host.dirtyMarks(), 0);
}

TEST(ClapWindowGesture, OnASwitchSetsZeroOrOne) {
    ClapWindowHost host;
    host.play();
    host.open();
    host.run();
    for (const SwitchPlace& place : switchPlaces) {
        host.click(place.at.x, place.at.y);
        ASSERT_TRUE(host.runUntil([&] { return host.toldOf(place.parameter).size() == 3; }));
        EXPECT_EQ(host.toldOf(place.parameter)[1].value,
                  place.parameter == kParamProcess ? 0.0 : 1.0);
    }
}

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

TEST(ClapWindowGesture, OfAnotherPresetIsARescanAndNoGesture) {
    ClapWindowHost host;
    host.play();
    host.open();
    host.run();
    host.click(rockerRight.x, rockerRight.y);
    ASSERT_TRUE(host.runUntil([&] { return host.plugIn.host.rescans() > 0; }));
    EXPECT_TRUE(host.told.empty());
    EXPECT_GT(host.plugIn.host.dirtyMarks(), 0);
    EXPECT_EQ(chunkPresetNo(bankOf(host)), 1);
    for (int index = 0; index < kNumParams; ++index)
        EXPECT_EQ(host.plugIn.value(index),
                  static_cast<double>(factoryPresets[1].values[static_cast<std::size_t>(index)]));
}

// Otherwise the host would take the older values for newer ones.
TEST(ClapWindowGesture, IsHeardBeforeTheRescanAfterIt) {
    ClapWindowHost host;
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    host.click(rockerRight.x, rockerRight.y);
    ASSERT_TRUE(host.runUntil([&] { return host.plugIn.host.dirtyMarks() > 0; }));
    host.run();
    EXPECT_EQ(host.plugIn.host.rescans(), 0);
    hosting::ClapOutputEvents told;
    host.plugIn.instance.flush(nullptr, told.list());
    EXPECT_FALSE(told.told().empty());
    EXPECT_TRUE(host.runUntil([&] { return host.plugIn.host.rescans() == 1; }));
}

TEST(ClapWindowGesture, OfANameThatIsBeingTypedCountsWhenTheWindowCloses) {
    ClapWindowHost host;
    host.open();
    host.run();
    host.click(nameField.x, nameField.y);
    for (const int key : {XK_a, XK_b, XK_c}) {
        host.parent->keyDown(static_cast<unsigned long>(key));
        host.parent->keyUp(static_cast<unsigned long>(key));
        host.run();
    }
    host.close();
    PresetBank bank;
    copyChunkBank(bankOf(host), bank);
    EXPECT_STREQ(bank[0].name().data(), "abc");
    host.plugIn.instance.serve();
    EXPECT_GT(host.plugIn.host.dirtyMarks(), 0);
}

TEST(ClapWindowGesture, StoresDefaultsThatTheNextInstanceStartsFrom) {
    ClapWindowHost host;
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    host.moveTo(defaultPreset.x, defaultPreset.y - 20);
    host.moveTo(defaultPreset.x, defaultPreset.y);
    host.parent->press();
    host.parent->release();
    host.parent->press();
    host.run();
    host.parent->release();
    EXPECT_TRUE(host.runUntil([] {
        const ClapPlugIn next;
        return std::abs(next.value(kParamGain) - 0.75) < 0.02;
    }));
}

// --- From the host to the window ---

TEST(ClapWindowFollows, EveryParameterThatTheHostSets) {
    ClapWindowHost host;
    host.open();
    for (int index = 0; index < kNumParams; ++index) {
        const Pixels before = host.pixels();
        host.plugIn.set(index, index == kParamProcess ? 0.0 : 1.0);
        EXPECT_TRUE(host.runUntil([&] { return host.parent->pixels() != before; })) << index;
    }
    hosting::ClapOutputEvents told;
    host.plugIn.instance.flush(nullptr, told.list());
    EXPECT_TRUE(told.told().empty()); // following is no gesture
}

TEST(ClapWindowFollows, AStateThatTheHostLoads) {
    ClapWindowHost host;
    host.open();
    host.moveTo(10, 10);
    const auto first = host.plugIn.instance.save();
    const Pixels shown = host.pixels();
    host.click(rockerRight.x, rockerRight.y);
    host.moveTo(10, 10);
    ASSERT_TRUE(host.runUntil([&] { return host.parent->pixels() != shown; }));
    ASSERT_TRUE(host.plugIn.instance.load(*first));
    EXPECT_TRUE(host.runUntil([&] { return host.parent->pixels() == shown; }));
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
}

} // namespace
} // namespace mirelon::test
