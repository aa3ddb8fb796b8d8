// The LV2 plug-in's window in a host's, and what goes between it and the host.
#include "tests/formats/formatwindow.h"
#include "tests/formats/lv2/lv2windowhost.h"

#include "formats/lv2/portvalues.h"
#include "processor/core/factorypresets.h"
#include "tests/editor/positions.h"
#include "tests/support/plugin.h"

#include <cmath>
#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t gainPort = lv2::portOfParameter(kParamGain);

// The part of the window with a slider's row in it.
Pixels row(const Pixels& window, int y) {
    return window.part(0, y - 8, window.width, y + 8);
}

// What the window shows below its top line, where an explanation may come at any time.
Pixels shown(Lv2WindowHost& host) {
    const Pixels all = host.pixels();
    return all.part(0, titleBottom, all.width, all.height);
}

INSTANTIATE_TEST_SUITE_P(Lv2, FormatWindow, testing::Values([]() -> std::unique_ptr<WindowHost> {
                             return std::make_unique<Lv2WindowHost>();
                         }));

// --- Opening and closing ---

TEST(Lv2WindowLife, GivesTheHostItsChildAndStaysOpen) {
    Lv2WindowHost host;
    ASSERT_TRUE(host.open());
    const auto children = host.parent->children();
    ASSERT_EQ(children.size(), 1U);
    EXPECT_EQ(host.window->child(), children[0]);
    EXPECT_EQ(host.window->sizes.size(), 1U);
    EXPECT_EQ(host.window->idle(), 0);
}

TEST(Lv2WindowLife, RefusesAHostThatLacksTheMappingOrTheParent) {
    Lv2WindowHost host;
    EXPECT_FALSE(NotedWindow(lv2Bundle(), {host.parent->id(), false, {}}).isOpen());
    EXPECT_FALSE(NotedWindow(lv2Bundle(), {0, true, {}}).isOpen());
    EXPECT_FALSE(NotedWindow(lv2Bundle(), {0x7FFFFF, true, {}}).isOpen());
    EXPECT_TRUE(host.parent->becomesEmpty());
}

TEST(Lv2WindowLife, OpensForAHostThatDoesNotAskForItsChild) {
    const Lv2WindowHost host;
    void* const library = dlopen(lv2Bundle().windowBinary().c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr);
    const auto entry =
        reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(library, "lv2ui_descriptor"));
    ASSERT_NE(entry, nullptr);
    const LV2UI_Descriptor& functions = *entry(0);
    const LV2_Feature mapping{LV2_URID__map, lv2Bundle().numbers().map()};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an X11 window is a number
    const LV2_Feature parent{LV2_UI__parent, reinterpret_cast<void*>(host.parent->id())};
    const LV2_Feature* const features[] = {&mapping, &parent, nullptr};
    const LV2UI_Write_Function leftAlone = [](LV2UI_Controller, std::uint32_t, std::uint32_t,
                                              std::uint32_t, const void*) {};
    const LV2UI_Handle window = functions.instantiate(&functions, lv2::pluginUri, "", leftAlone,
                                                      nullptr, nullptr, features);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(host.parent->children().size(), 1U);
    functions.cleanup(window);
    EXPECT_TRUE(host.parent->becomesEmpty());
    dlclose(library);
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

TEST(Lv2WindowGesture, IsWrittenInThePortsUnitAndWithoutABank) {
    Lv2WindowHost host;
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    ASSERT_TRUE(host.runUntil([&] { return host.window->touches == "b7e7"; }));
    const auto numbers = host.numbersWritten(gainPort);
    ASSERT_FALSE(numbers.empty());
    EXPECT_NEAR(numbers.back(), 6.0F, 0.3F);
    EXPECT_TRUE(host.banksWritten().empty());
}

TEST(Lv2WindowGesture, OfAnotherPresetWritesEveryPort) {
    Lv2WindowHost host;
    host.open();
    host.run();
    host.click(rockerRight.x, rockerRight.y);
    for (VstInt32 index = 0; index < kNumParams; ++index) {
        const auto numbers = host.numbersWritten(lv2::portOfParameter(index));
        ASSERT_FALSE(numbers.empty()) << index;
        EXPECT_EQ(
            numbers.back(),
            lv2::portValueOf(index, factoryPresets[1].values[static_cast<std::size_t>(index)]));
    }
}

// --- From the host to the window ---

TEST(Lv2WindowFollows, TheMetersPorts) {
    Lv2WindowHost host;
    host.open();
    host.window->tell(lv2::kPortWidthMeter, -0.5F);
    host.window->tell(lv2::kPortBalanceMeter, -0.5F);
    const Pixels low = shown(host);
    host.window->tell(lv2::kPortWidthMeter, 0.5F);
    const Pixels wide = shown(host);
    EXPECT_NE(wide, low);
    host.window->tell(lv2::kPortBalanceMeter, 0.5F);
    EXPECT_NE(shown(host), wide);
}

TEST(Lv2WindowFollows, NothingThatIsNoEventOfOurs) {
    Lv2WindowHost host;
    host.open();
    const Pixels before = shown(host);
    const float number = 12.0F;
    host.window->tellRaw(gainPort, 3, 0, &number);
    host.window->tellRaw(gainPort, 4, 99, &number);
    host.window->tellRaw(gainPort, 4, 0, nullptr);
    host.window->tellRaw(1000, 4, 0, &number);
    host.window->tellRaw(lv2::kPortNotify, 4, lv2Types().eventTransfer, &number);
    host.window->tell(gainPort, std::nanf(""));
    EXPECT_EQ(shown(host), before);
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
    const Pixels first = shown(host);
    host.click(rockerRight.x, rockerRight.y);
    const Pixels second = shown(host);
    EXPECT_EQ(chunkPresetNo(host.playedBank()), 1);
    host.moveTo(10, 10);
    const Pixels expected = shown(host);
    ASSERT_NE(expected, first);
    host.open();
    EXPECT_EQ(shown(host), expected);
    EXPECT_TRUE(host.banksWritten().empty()); // following is no change
}

TEST(Lv2WindowOfAPlayingPlugIn, ShowsARestoredState) {
    Lv2WindowHost host;
    host.play();
    host.open();
    host.click(rockerRight.x, rockerRight.y);
    host.moveTo(10, 10);
    const Pixels second = shown(host);
    const auto state = host.instance->save();
    std::vector<float> ports;
    for (std::uint32_t port = 0; port < lv2::kNumPorts; ++port)
        ports.push_back(host.instance->control(port));

    host.play(); // a new instance
    host.open();
    host.moveTo(10, 10);
    ASSERT_NE(shown(host), second);
    for (std::uint32_t port = 0; port < lv2::kNumPorts; ++port)
        if (host.instance->isControlInput(port))
            host.instance->control(port) = ports[port];
    host.instance->restore(state);
    EXPECT_TRUE(host.runUntil([&] { return shown(host) == second; }));
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
    const Pixels chosen = shown(host);
    hosting::Lv2Instance fresh(lv2Bundle(), 48000.0);
    ChunkImage old{};
    const auto state = fresh.save();
    std::ranges::copy(state.at(lv2::bankPropertyUri).value, old.begin());
    host.window->tell(lv2::kPortNotify, lv2::formBankMessage(lv2Types(), old));
    EXPECT_EQ(host.questions(), 2);
    EXPECT_EQ(shown(host), chosen);
    host.window->tell(lv2::kPortNotify, lv2::formBankMessage(lv2Types(), old));
    EXPECT_NE(shown(host), chosen); // the second answer counts
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
    // At once, so that the bank that is asked for has it.
    EXPECT_EQ(host.banksWritten().size(), 1U);
    EXPECT_EQ(host.questions(), 2);
    host.parent->release();
    host.run();
    ASSERT_EQ(host.banksWritten().size(), 1U);
    EXPECT_NE(host.banksWritten().back(), old);
    EXPECT_EQ(host.questions(), 2);
}

} // namespace
} // namespace mirelon::test
