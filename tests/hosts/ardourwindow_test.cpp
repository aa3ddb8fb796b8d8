// The plug-in's editor in Ardour's window.
#include "tests/editor/editorhost.h"
#include "tests/hosts/ardourwindow.h"
#include "tests/hosts/gesture.h"
#include "tests/hosts/observations.h"

#include <X11/keysym.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

namespace mirelon::test {
namespace {

using std::chrono::seconds;
using Kind = Observation::Kind;

constexpr SliderPlace widthSlider = sliderPlaces[0];
constexpr SliderPlace balanceSlider = sliderPlaces[2];

class ArdourWindow : public ArdourWindowTest {
  protected:
    ArdourWindow()
        : ArdourWindowTest(observer()) {}

    void SetUp() override {
        home.addEnvironment(observing(record));
        ArdourWindowTest::SetUp();
    }

    void start() {
        std::filesystem::remove(record);
        ASSERT_NO_FATAL_FAILURE(ArdourWindowTest::start());
        ASSERT_TRUE(eventually(seconds(10), [this] { return countOf(effEditOpen) == 1; }));
        editorThread = theCall(effEditOpen).thread;
    }

    void automate(int parameter, const std::vector<std::string>& points) const {
        ardour::automate(home, session.path(), {parameter, points});
    }
    Observations calls() const { return observationsIn(record); }
    std::size_t countOf(VstInt32 opcode) const {
        const Observations all = calls();
        return static_cast<std::size_t>(std::count_if(
            all.begin(), all.end(), [=](const auto& call) { return call.is(Kind::asks, opcode); }));
    }
    Observation theCall(VstInt32 opcode) const {
        for (const Observation& call : calls())
            if (call.is(Kind::asks, opcode))
                return call;
        return {};
    }

    std::filesystem::path record = home / "observations";
    std::string editorThread;
};

TEST_F(ArdourWindow, ShowsTheWholeEditorAtTheReportedSize) {
    ASSERT_NO_FATAL_FAILURE(start());
    // The same editor in a bare window, after some silence as well.
    EditorHost bare;
    const Pixels empty = bare.window->pixels();
    ASSERT_EQ(bare.open(), 1);
    bare.effect->resume();
    std::vector<float> silence(1024);
    float* channels[] = {silence.data(), silence.data()};
    bare.effect->process(channels, channels, 1024);
    ASSERT_TRUE(bare.runUntilStill(empty));
    const Pixels expected = bare.pixels();
    ASSERT_EQ(theCall(effEditGetRect).extra,
              std::to_string(expected.width) + 'x' + std::to_string(expected.height));

    double alike = 0.0;
    const bool shown = eventually(seconds(10), [&] {
        const auto window = editor();
        const Pixels found = window ? screen->pixels(*window) : Pixels{};
        std::size_t same = 0;
        for (std::size_t i = 0; i < expected.rgb.size() && i < found.rgb.size(); ++i)
            same += found.rgb[i] == expected.rgb[i] ? 1 : 0;
        alike = static_cast<double>(same) / static_cast<double>(expected.rgb.size());
        return alike > 0.98;
    });
    EXPECT_TRUE(shown) << alike << " of the pixels are as they should be";
}

TEST_F(ArdourWindow, DragOnASliderIsOneGestureOnTheEditorsThreadAndIsSaved) {
    ASSERT_NO_FATAL_FAILURE(start());
    const std::size_t before = calls().size();
    const auto window = editor();
    ASSERT_TRUE(window);
    dragSlider(*screen, *window, balanceSlider, 0.5, 0.75);
    const float last = lastOfRisingGesture(
        finishedGestureOn(balanceSlider.parameter, record, before), editorThread);
    EXPECT_NE(editorThread, "main"); // Ardour gives editors a thread of their own
    EXPECT_NEAR(last, 0.75F, 0.01F);
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.75); }))
        << "the handle did not follow";

    // What was dragged is what the session brings back in a new process.
    quit();
    const auto reloaded = ardour::parametersIn(
        ardour::runScript(home, "bounce.lua", {session.path(), "1024", "after"}));
    ASSERT_TRUE(reloaded.contains(balanceSlider.parameter));
    EXPECT_EQ(reloaded.at(balanceSlider.parameter), last);
}

TEST_F(ArdourWindow, AutomationOfTheHostMovesTheSlider) {
    automate(widthSlider.parameter, {"0=0.5", "48000=0.9"});
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(eventually(seconds(10), [&] { return standsAt(widthSlider, 0.5); }))
        << "the slider does not stand in the middle";
    ASSERT_NO_FATAL_FAILURE(pressSpace());
    expectToRise(widthSlider, 0.7);
    const Observations all = calls();
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), [this](const Observation& call) {
        return call.kind == Kind::sets && call.index == widthSlider.parameter && call.opt > 0.6F &&
               call.thread != "main" && call.thread != editorThread;
    })) << "the audio thread set no parameter";
}

TEST_F(ArdourWindow, SpaceStartsAndStopsTheTransportAfterAClickOnASlider) {
    // Slow enough to be seen standing half way.
    automate(widthSlider.parameter, {"0=0.5", "400000=0.9"});
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(eventually(seconds(10), [&] { return standsAt(widthSlider, 0.5); }));
    const auto window = editor();
    ASSERT_TRUE(window);
    screen->click(*window, {handlePosition(0.25), balanceSlider.y});
    ASSERT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.25); }));
    // The pointer stays where it is.
    screen->key(XK_space);
    ASSERT_TRUE(eventually(seconds(15), [&] {
        return handle(widthSlider).value_or(0) > handlePosition(0.55);
    })) << "the transport does not run";
    screen->key(XK_space);
    EXPECT_TRUE(eventually(seconds(5), [&] {
        const auto before = handle(widthSlider);
        std::this_thread::sleep_for(std::chrono::milliseconds(500)); // it would move
        return before && handle(widthSlider) == before && *before < handlePosition(0.85);
    })) << "the transport does not stop";
    EXPECT_TRUE(standsAt(balanceSlider, 0.25));
}

TEST_F(ArdourWindow, TakesAnotherSizeAtOnceAndHasItWhenItIsShownAgain) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(changeSize());
    quit();
}

TEST_F(ArdourWindow, IsHiddenAndShownFiveTimesAndTheHostQuitsCleanly) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(hideAndShowEditor(5));
    quit();
    // Ardour keeps a hidden editor open; in the end all is closed, in order.
    EXPECT_EQ(countOf(effEditOpen), countOf(effEditClose));
    const Observations all = calls();
    EXPECT_TRUE(all.back().is(Kind::asks, effClose));
}

} // namespace
} // namespace mirelon::test
