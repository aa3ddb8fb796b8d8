// What the plug-in's window promises in every format.
#include "tests/formats/formatwindow.h"

#include "processor/core/factorypresets.h"
#include "tests/editor/positions.h"
#include "tests/support/processes.h"

#include <X11/keysym.h>
#include <cmath>
#include <vector>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;
using Size = WindowHost::Size;

constexpr std::uint32_t hostGrey = 0x808080;

// --- Opening and closing ---

TEST_P(FormatWindow, OpensInTheHostsWindowInItsOwnSize) {
    ASSERT_TRUE(host.open());
    EXPECT_EQ(host.parent->children().size(), 1U);
    EXPECT_EQ(host.size(), Size(324, 348));
    EXPECT_TRUE(host.runUntil([&] {
        const Pixels picture = host.parent->pixels();
        return picture.at(0, 0) != hostGrey && picture.at(323, 347) != hostGrey;
    }));
}

TEST_P(FormatWindow, OpensInTheScaleThatTheHostAsksFor) {
    ASSERT_TRUE(host.open(2.0));
    EXPECT_EQ(host.size(), Size(648, 696));
}

TEST_P(FormatWindow, AsksTheHostForTheSizeThatTheUserChooses) {
    host.parent->resize(486, 522);
    const Pixels empty = host.parent->pixels();
    ASSERT_TRUE(host.open());
    ASSERT_TRUE(host.runUntilStill(empty));
    ASSERT_TRUE(host.chooseSizeOfOneAndAHalf());
    EXPECT_EQ(host.sizesAsked(), (std::vector<Size>{{486, 522}}));
    EXPECT_TRUE(host.runUntil([&] {
        const Pixels larger = host.parent->pixels();
        return larger.at(480, 515) == larger.at(10, 515) &&
               larger.at(480, 515) != empty.at(480, 515);
    }));

    host.close();
    ASSERT_TRUE(host.open(2.0)); // the user's choice wins over the host's scale
    EXPECT_EQ(host.size(), Size(486, 522));
}

TEST_P(FormatWindow, ClosingTakesItAway) {
    const Pixels empty = host.parent->pixels();
    host.open();
    ASSERT_TRUE(host.runUntilStill(empty));
    host.close();
    EXPECT_TRUE(host.parent->becomesEmpty());
}

TEST_P(FormatWindow, SixtyOpeningsWithTwoAtOnceInEveryThirdLeaveNothingBehind) {
    const auto other = GetParam()();
    host.play();
    ASSERT_TRUE(host.open());
    host.run();
    host.close();
    const auto before = openFiles();
    for (int i = 0; i < 60; ++i) {
        ASSERT_TRUE(host.open()) << i;
        const bool two = i % 3 == 0;
        if (two) {
            ASSERT_TRUE(other->open()) << i;
            other->run(20ms);
        }
        host.run(30ms);
        ASSERT_EQ(host.parent->children().size(), 1U) << i;
        if (two && i % 2 == 0)
            other->close();
        host.close();
        other->close();
        ASSERT_TRUE(host.parent->becomesEmpty()) << i;
    }
    EXPECT_EQ(openFiles(), before);
    host.open();
    EXPECT_TRUE(host.runUntil([&] { return host.parent->pixels().at(10, 10) != hostGrey; }));
}

TEST_P(FormatWindow, TheHostsOwnMayGoFirst) {
    host.open();
    host.run();
    host.parent->destroy();
    host.run();
    host.set(kParamGain, 0.75F);
    host.run();
    host.close();
    host.parent = std::make_unique<XWindow>(editorWidth, editorHeight);
    EXPECT_TRUE(host.open());
}

// --- From the user to the host ---

TEST_P(FormatWindow, TellsADragAsValuesOfOneParameterInsideAGesture) {
    host.play();
    host.open();
    host.run();
    host.drag(handlePosition(0.5), handlePosition(0.75), gainRow);
    EXPECT_TRUE(host.runUntil([&] { return host.gestures() == "b1e1"; }));
    const auto values = host.valuesTold(kParamGain);
    ASSERT_FALSE(values.empty());
    EXPECT_NEAR(values.back(), 0.75F, 0.02F);
    EXPECT_EQ(host.value(kParamGain), values.back());
    for (int parameter = 0; parameter < kNumParams; ++parameter) {
        if (parameter != kParamGain) {
            EXPECT_TRUE(host.valuesTold(parameter).empty()) << parameter;
        }
    }
}

TEST_P(FormatWindow, TellsASwitchAsZeroOrOne) {
    host.play();
    host.open();
    host.run();
    for (const SwitchPlace& place : switchPlaces) {
        host.click(place.at.x, place.at.y);
        ASSERT_TRUE(host.runUntil([&] { return !host.valuesTold(place.parameter).empty(); }));
        EXPECT_EQ(host.valuesTold(place.parameter),
                  std::vector{place.parameter == kParamProcess ? 0.0F : 1.0F});
    }
    EXPECT_TRUE(host.runUntil([&] { return host.gestures() == "b5e5b7e7b8e8b6e6"; }));
}

TEST_P(FormatWindow, TellsAnotherPresetWithoutAGesture) {
    host.play();
    host.open();
    host.run();
    host.click(rockerRight.x, rockerRight.y);
    ASSERT_TRUE(host.runUntil([&] {
        const auto bank = host.bank();
        return bank && chunkPresetNo(*bank) == 1;
    }));
    EXPECT_TRUE(host.runUntil([&] {
        for (int parameter = 0; parameter < kNumParams; ++parameter) {
            const float wanted = factoryPresets[1].values[static_cast<std::size_t>(parameter)];
            if (std::abs(host.value(parameter).value_or(-1.0F) - wanted) > 1e-5F)
                return false;
        }
        return true;
    }));
    EXPECT_EQ(host.gestures(), "");
}

TEST_P(FormatWindow, TakesANameThatIsBeingTypedWhenItCloses) {
    host.play();
    host.open();
    host.run();
    host.click(nameField.x, nameField.y);
    for (const int key : {XK_a, XK_b, XK_c})
        host.key(static_cast<unsigned long>(key));
    host.close();
    const auto image = host.bank();
    ASSERT_TRUE(image);
    PresetBank bank;
    copyChunkBank(*image, bank);
    EXPECT_STREQ(bank[0].name().data(), "abc");
}

// --- From the host to the window ---

TEST_P(FormatWindow, FollowsEveryParameterAndTellsNoneOfThem) {
    const Pixels empty = host.parent->pixels();
    host.open();
    ASSERT_TRUE(host.runUntilStill(empty));
    for (int parameter = 0; parameter < kNumParams; ++parameter) {
        const Pixels before = host.pixels();
        host.set(parameter, parameter == kParamProcess ? 0.0F : 1.0F);
        EXPECT_TRUE(host.runUntil([&] { return host.parent->pixels() != before; })) << parameter;
    }
    host.set(kParamProcess, 1.0F); // brings what is still to be told
    EXPECT_EQ(host.gestures(), "");
    for (int parameter = 0; parameter < kNumParams; ++parameter)
        EXPECT_TRUE(host.valuesTold(parameter).empty()) << parameter;
}

} // namespace
} // namespace mirelon::test
