// The LV2 plug-in's window in a host's, and what goes between it and the host.
#include "tests/formats/lv2/lv2windowhost.h"

#include "formats/lv2/portvalues.h"
#include "processor/core/factorypresets.h"
#include "tests/editor/positions.h"
#include "tests/support/plugin.h"
#include "tests/support/processes.h"

#include <X11/keysym.h>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t hostGrey = 0x808080;
constexpr std::uint32_t gainPort = lv2::portOfParameter(kParamGain);

constexpr int gainRow = 94;

// The part of the window with a slider's row in it.
Pixels row(const Pixels& window, int y) {
    return window.part(0, y - 8, window.width, y + 8);
}

// --- Opening and closing ---

TEST(Lv2WindowLife, OpensInTheHostsWindowInItsOwnSize) {
    Lv2WindowHost host;
    ASSERT_TRUE(host.open());
    EXPECT_EQ(host.window->sizes, (std::vector<std::pair<int, int>>{{324, 348}}));
    const auto children = host.parent->children();
    ASSERT_EQ(children.size(), 1U);
    EXPECT_EQ(host.window->child(), children[0]);
    const Pixels picture = host.pixels();
    EXPECT_NE(picture.at(0, 0), hostGrey);
    EXPECT_NE(picture.at(323, 347), hostGrey);
    EXPECT_EQ(host.window->idle(), 0);
}

TEST(Lv2WindowLife, RefusesAHostThatLacksTheMappingOrTheParent) {
    Lv2WindowHost host;
    EXPECT_FALSE(NotedWindow(lv2Bundle(), {host.parent->id(), false, {}}).isOpen());
    EXPECT_FALSE(NotedWindow(lv2Bundle(), {0, true, {}}).isOpen());
    EXPECT_FALSE(NotedWindow(lv2Bundle(), {0x7FFFFF, true, {}}).isOpen());
    EXPECT_TRUE(host.parent->becomesEmpty());
}

TEST(Lv2WindowLife, OpensInTheScaleThatTheHostAsksFor) {
    Lv2WindowHost host(2.0F);
    ASSERT_TRUE(host.open());
    EXPECT_EQ(host.window->sizes, (std::vector<std::pair<int, int>>{{648, 696}}));
}

TEST(Lv2WindowLife, AsksTheHostForTheSizeThatTheUserChooses) {
    Lv2WindowHost host;
    host.parent->resize(486, 522);
    ASSERT_TRUE(host.open());
    host.run();
    const auto runUntil = [&](const auto& reached) {
        for (int turn = 0; turn < 100 && !reached(); ++turn)
            host.run();
    };
    const std::uint32_t closed = host.pixels().at(100, 150);
    host.click(60, 9, 3);
    runUntil([&] { return host.pixels().at(100, 150) != closed; });
    host.run(600ms);    // the menu takes clicks once it has come up
    host.click(80, 58); // its third line
    runUntil([&] { return host.window->sizes.size() == 2; });
    EXPECT_EQ(host.window->sizes, (std::vector<std::pair<int, int>>{{324, 348}, {486, 522}}));
    EXPECT_EQ(host.pixels().at(480, 515), host.pixels().at(10, 515));

    host.scale = 2.0F; // the user's choice wins over the host's
    host.window.reset();
    ASSERT_TRUE(host.open());
    EXPECT_EQ(host.window->sizes, (std::vector<std::pair<int, int>>{{486, 522}}));
}

TEST(Lv2WindowLife, ClosingTakesTheWindowAway) {
    Lv2WindowHost host;
    host.open();
    host.run();
    host.window.reset();
    EXPECT_TRUE(host.parent->becomesEmpty());
}

TEST(Lv2WindowLife, SixtyOpeningsWithTwoAtOnceInEveryThirdLeaveNothingBehind) {
    Lv2WindowHost host;
    Lv2WindowHost other;
    host.play();
    ASSERT_TRUE(host.open());
    host.run();
    host.window.reset();
    const auto before = openFiles();
    for (int i = 0; i < 60; ++i) {
        ASSERT_TRUE(host.open()) << i; // loads the binary, and unloads it below
        const bool two = i % 3 == 0;
        if (two) {
            ASSERT_TRUE(other.open()) << i;
            other.run(20ms);
        }
        host.run(30ms);
        ASSERT_EQ(host.parent->children().size(), 1U) << i;
        if (two && i % 2 == 0)
            other.window.reset();
        host.window.reset();
        other.window.reset();
        ASSERT_TRUE(host.parent->becomesEmpty()) << i;
    }
    EXPECT_EQ(openFiles(), before);
    host.open();
    EXPECT_NE(host.pixels().at(10, 10), hostGrey);
}

TEST(Lv2WindowLife, TheHostsWindowMayGoFirst) {
    Lv2WindowHost host;
    host.open();
    host.run();
    host.parent->destroy();
    host.run();
    host.window->tell(gainPort, 3.0F);
    host.run();
    host.window.reset();
    host.parent = std::make_unique<XWindow>(324, 348);
    EXPECT_TRUE(host.open());
}

// Its plug-in does not start from them either.
TEST(Lv2WindowLife, DoesNotShowTheStoredDefaults) {
    Lv2WindowHost host;
    host.open();
    host.moveTo(10, 10);
    const Pixels fresh = host.pixels();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    host.doubleClick(defaultPreset.x, defaultPreset.y);
    host.window.reset();
    PluginInstance vst;
    ASSERT_NEAR(vst.effect.parameter(kParamGain), 0.75F, 0.02F) << "nothing was stored";
    host.open();
    host.moveTo(10, 10);
    EXPECT_EQ(row(host.pixels(), gainRow), row(fresh, gainRow));
}

// --- From the user to the host ---

TEST(Lv2WindowGesture, WritesItsValuesBetweenTouches) {
    Lv2WindowHost host;
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    const auto numbers = host.numbersWritten(gainPort);
    ASSERT_FALSE(numbers.empty());
    EXPECT_NEAR(numbers.back(), 6.0F, 0.3F);
    EXPECT_EQ(host.window->touches, "b7e7");
    for (std::uint32_t port = lv2::kPortFirstParameter; port < lv2::kPortWidthMeter; ++port) {
        if (port != gainPort) {
            EXPECT_TRUE(host.numbersWritten(port).empty()) << port;
        }
    }
    EXPECT_TRUE(host.banksWritten().empty());
}

TEST(Lv2WindowGesture, OnASwitchWritesZeroOrOne) {
    Lv2WindowHost host;
    host.open();
    host.run();
    for (const SwitchPlace& place : switchPlaces)
        host.click(place.at.x, place.at.y);
    EXPECT_EQ(host.numbersWritten(lv2::portOfParameter(kParamProcess)), std::vector{0.0F});
    for (const VstInt32 index : {kParamPhase, kParamInvertL, kParamInvertR})
        EXPECT_EQ(host.numbersWritten(lv2::portOfParameter(index)), std::vector{1.0F});
}

TEST(Lv2WindowGesture, OfAnotherPresetWritesEveryPortAndTheBankWithoutTouches) {
    Lv2WindowHost host;
    host.open();
    host.run();
    host.click(rockerRight.x, rockerRight.y);
    EXPECT_EQ(host.window->touches, "");
    const auto banks = host.banksWritten();
    ASSERT_FALSE(banks.empty());
    EXPECT_EQ(chunkPresetNo(banks.back()), 1);
    for (VstInt32 index = 0; index < kNumParams; ++index) {
        const auto numbers = host.numbersWritten(lv2::portOfParameter(index));
        ASSERT_FALSE(numbers.empty()) << index;
        EXPECT_EQ(
            numbers.back(),
            lv2::portValueOf(index, factoryPresets[1].values[static_cast<std::size_t>(index)]));
    }
}

TEST(Lv2WindowGesture, OfANameThatIsBeingTypedCountsWhenTheWindowCloses) {
    Lv2WindowHost host;
    host.open();
    host.run();
    host.click(nameField.x, nameField.y);
    for (const int key : {XK_a, XK_b, XK_c}) {
        host.parent->keyDown(static_cast<unsigned long>(key));
        host.parent->keyUp(static_cast<unsigned long>(key));
        host.run(20ms);
    }
    host.window->close();
    const auto banks = host.banksWritten();
    ASSERT_FALSE(banks.empty());
    PresetBank bank;
    copyChunkBank(banks.back(), bank);
    EXPECT_STREQ(bank[0].name().data(), "abc");
}

// --- From the host to the window ---

TEST(Lv2WindowFollows, EveryParametersPort) {
    Lv2WindowHost host;
    host.open();
    for (VstInt32 index = 0; index < kNumParams; ++index) {
        const Pixels before = host.pixels();
        host.window->tell(lv2::portOfParameter(index),
                          lv2::portValueOf(index, index == kParamProcess ? 0.0F : 1.0F));
        EXPECT_NE(host.pixels(), before) << index;
    }
    EXPECT_TRUE(host.window->touches.empty());
    for (VstInt32 index = 0; index < kNumParams; ++index)
        EXPECT_TRUE(host.numbersWritten(lv2::portOfParameter(index)).empty()) << index;
}

TEST(Lv2WindowFollows, TheMetersPorts) {
    Lv2WindowHost host;
    host.open();
    host.window->tell(lv2::kPortWidthMeter, -0.5F);
    host.window->tell(lv2::kPortBalanceMeter, -0.5F);
    const Pixels low = host.pixels();
    host.window->tell(lv2::kPortWidthMeter, 0.5F);
    const Pixels wide = host.pixels();
    EXPECT_NE(wide, low);
    host.window->tell(lv2::kPortBalanceMeter, 0.5F);
    EXPECT_NE(host.pixels(), wide);
}

TEST(Lv2WindowFollows, NothingThatIsNoEventOfOurs) {
    Lv2WindowHost host;
    host.open();
    const Pixels before = host.pixels();
    const float number = 12.0F;
    host.window->tellRaw(gainPort, 3, 0, &number);
    host.window->tellRaw(gainPort, 4, 99, &number);
    host.window->tellRaw(gainPort, 4, 0, nullptr);
    host.window->tellRaw(1000, 4, 0, &number);
    host.window->tellRaw(lv2::kPortNotify, 4, lv2Types().eventTransfer, &number);
    host.window->tell(gainPort, std::nanf(""));
    EXPECT_EQ(host.pixels(), before);
}

TEST(Lv2WindowFollows, APortExceptWhileTheUserHoldsItsControl) {
    Lv2WindowHost host;
    host.open();
    host.run();
    host.moveTo(handlePosition(0.5), gainRow);
    host.parent->press();
    host.run(40ms);
    host.moveTo(handlePosition(0.9), gainRow);
    const Pixels held = row(host.pixels(), gainRow);
    host.window->tell(gainPort, -12.0F);
    EXPECT_EQ(row(host.pixels(), gainRow), held);
    host.window->tell(lv2::portOfParameter(kParamWidth), 400.0F); // another's is shown
    host.parent->release();
    host.run(40ms);
    host.window->tell(gainPort, -12.0F);
    EXPECT_NE(row(host.pixels(), gainRow), held);
}

// --- With the plug-in playing ---

TEST(Lv2WindowOfAPlayingPlugIn, AsksForTheBankWhenItOpens) {
    Lv2WindowHost host;
    host.play();
    ASSERT_TRUE(host.open());
    EXPECT_EQ(host.questions(), 0); // hosts take writes from the first idle on
    host.run();
    EXPECT_EQ(host.questions(), 1);
    host.run();
    EXPECT_EQ(host.questions(), 1);
}

TEST(Lv2WindowOfAPlayingPlugIn, ShowsAPresetThatWasChosenInAnotherOpening) {
    Lv2WindowHost host;
    host.play();
    host.open();
    const Pixels first = host.pixels();
    host.click(rockerRight.x, rockerRight.y);
    const Pixels second = host.pixels();
    EXPECT_EQ(chunkPresetNo(host.playedBank()), 1);
    host.moveTo(10, 10);
    const Pixels expected = host.pixels();
    ASSERT_NE(expected, first);
    host.open();
    EXPECT_EQ(host.pixels(), expected);
    EXPECT_TRUE(host.banksWritten().empty()); // following is no change
}

TEST(Lv2WindowOfAPlayingPlugIn, ShowsARestoredState) {
    Lv2WindowHost host;
    host.play();
    host.open();
    host.click(rockerRight.x, rockerRight.y);
    host.moveTo(10, 10);
    const Pixels second = host.pixels();
    const auto state = host.instance->save();
    std::vector<float> ports;
    for (std::uint32_t port = 0; port < lv2::kNumPorts; ++port)
        ports.push_back(host.instance->control(port));

    host.play(); // a new instance
    host.open();
    host.moveTo(10, 10);
    ASSERT_NE(host.pixels(), second);
    for (std::uint32_t port = 0; port < lv2::kNumPorts; ++port)
        if (host.instance->isControlInput(port))
            host.instance->control(port) = ports[port];
    host.instance->restore(state);
    EXPECT_EQ(host.pixels(), second);
    EXPECT_EQ(host.instance->save(), state);
}

TEST(Lv2WindowOfAPlayingPlugIn, StaysWhereTheUserDraggedItWhileTheHostEchoes) {
    Lv2WindowHost host;
    host.play(Echo::late);
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    host.moveTo(10, 10);
    const auto numbers = host.numbersWritten(gainPort);
    ASSERT_FALSE(numbers.empty());
    host.run();
    EXPECT_EQ(host.instance->control("gain"), numbers.back());
    EXPECT_EQ(host.numbersWritten(gainPort), numbers);
    const Pixels dragged = row(host.pixels(), gainRow);
    Lv2WindowHost expected;
    expected.open();
    expected.window->tell(gainPort, numbers.back());
    EXPECT_EQ(dragged, row(expected.pixels(), gainRow));
}

TEST(Lv2WindowOfAPlayingPlugIn, PlaysAndKeepsWhatTheWindowShowsAfterEveryPreset) {
    Lv2WindowHost host;
    host.play(Echo::late);
    host.open();
    host.run();
    for (int preset = 1; preset < kNumPresets; ++preset) {
        host.click(rockerRight.x, rockerRight.y);
        host.run();
        const ChunkImage played = host.playedBank();
        EXPECT_EQ(chunkPresetNo(played), preset);
        EXPECT_EQ(host.banksWritten().back(), played);
        PresetBank bank;
        copyChunkBank(played, bank);
        for (std::size_t i = 0; i < bank.size(); ++i)
            for (int j = 0; j < kNumParams; ++j)
                ASSERT_EQ(bank[i].value(j), factoryPresets[i].values[static_cast<std::size_t>(j)])
                    << preset << ' ' << i << ' ' << j;
    }
}

TEST(Lv2WindowOfAPlayingPlugIn, AsksAgainWhenTheUserWasFasterThanTheAnswer) {
    Lv2WindowHost host;
    host.open(); // nothing plays yet: the question stays unanswered
    host.run();
    ASSERT_EQ(host.questions(), 1);
    host.click(rockerRight.x, rockerRight.y);
    const Pixels chosen = host.pixels();
    hosting::Lv2Instance fresh(lv2Bundle(), 48000.0);
    ChunkImage old{};
    const auto state = fresh.save();
    std::ranges::copy(state.at(lv2::bankPropertyUri).value, old.begin());
    host.window->tell(lv2::kPortNotify, lv2::formBankMessage(lv2Types(), old));
    EXPECT_EQ(host.questions(), 2);
    EXPECT_EQ(host.pixels(), chosen);
    host.window->tell(lv2::kPortNotify, lv2::formBankMessage(lv2Types(), old));
    EXPECT_NE(host.pixels(), chosen); // the second answer counts
}

TEST(Lv2WindowOfAPlayingPlugIn, SendsWhatTheUserDidJustBeforeTheAnswerCame) {
    Lv2WindowHost host;
    host.open(); // nothing plays yet: the question stays unanswered
    host.run();
    const auto state = hosting::Lv2Instance(lv2Bundle(), 48000.0).save();
    ChunkImage old{};
    std::ranges::copy(state.at(lv2::bankPropertyUri).value, old.begin());
    host.moveTo(rockerRight.x, rockerRight.y);
    host.parent->press();
    host.runMainLoop(); // no idle of the window's
    host.window->tell(lv2::kPortNotify, lv2::formBankMessage(lv2Types(), old));
    host.parent->release();
    host.run();
    ASSERT_EQ(host.banksWritten().size(), 1U);
    EXPECT_NE(host.banksWritten().back(), old);
    EXPECT_EQ(host.questions(), 2);
}

} // namespace
} // namespace mirelon::test
