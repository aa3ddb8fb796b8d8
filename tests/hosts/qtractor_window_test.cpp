// The plug-in in Qtractor, with its window.
#include "tests/hosts/editorview.h"
#include "tests/hosts/gesture.h"
#include "tests/hosts/jackserver.h"
#include "tests/hosts/observations.h"
#include "tests/hosts/qtractor.h"
#include "tests/hosts/screen.h"

#include <X11/keysym.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <set>

namespace mirelon::test {
namespace {

using std::chrono::seconds;
using Kind = Observation::Kind;

constexpr SliderPlace balanceSlider = sliderPlaces[2];
constexpr double draggedTo = 0.7;

constexpr auto mainTitle = "session.qtr";
constexpr auto unsavedTitle = "session.qtr [modified]";
constexpr auto mixerTitle = "Mixer";
constexpr auto pluginTitle = "Dravik Mirelon - Master Out";

class QtractorWindow : public ::testing::Test {
  protected:
    void SetUp() override {
        SKIP_WITHOUT_QTRACTOR();
        if (!JackServer::isInstalled())
            GTEST_SKIP() << "the JACK server is not installed (scripts/setup --hosts)";
        if (!Screen::hasWindowManager())
            GTEST_SKIP() << "openbox is not installed (scripts/setup)";
        home.addEnvironment(observing(record));
        home.addEnvironment({{"DISPLAY", Screen::display()}});
        jack = std::make_unique<JackServer>(home);
        home.addEnvironment(jack->variables());
        screen = std::make_unique<Screen>(home.environment(), home / "openbox.log");
        qtractor::writeSession(home, session);
    }

    // Starts Qtractor with the session and waits until the plug-in plays.
    void start() {
        std::filesystem::remove(record);
        host = std::make_unique<Program>(
            std::vector<std::string>{qtractor::program(), session.string()},
            home.environment(qtractor::variables()), home / "qtractor.log");
        ASSERT_TRUE(eventually(seconds(60), [this] {
            return screen->windowTitled(mainTitle) && !blocks(calls()).empty();
        })) << contentsOf(home / "qtractor.log");
    }

    // Shows the mixer and, by a double click on the plug-in's name in the master
    // bus's strip, the editor.
    void openEditor() {
        const auto main = screen->windowTitled(mainTitle);
        ASSERT_TRUE(main);
        for (int attempt = 0; attempt < 5 && !screen->windowTitled(mixerTitle); ++attempt) {
            screen->activate(*main);
            screen->key(XK_F9);
            eventually(seconds(10), [this] { return screen->windowTitled(mixerTitle); });
        }
        const auto mixer = screen->windowTitled(mixerTitle);
        ASSERT_TRUE(mixer) << "the mixer was not shown";
        ASSERT_TRUE(eventually(seconds(60), [&] {
            // The output busses stand at the mixer's right end.
            const Position entry{screen->pixels(*mixer).width - 115, 47};
            screen->activate(*mixer);
            screen->pointAt(*mixer, {entry.x - 3, entry.y});
            screen->pointAt(*mixer, entry);
            screen->doubleClick();
            return eventually(seconds(10), [this] { return handle().has_value(); });
        })) << "the editor was not shown";
    }

    std::optional<Screen::WindowId> editor() const {
        const auto window = screen->windowTitled(pluginTitle);
        return window ? screen->inside(*window, editorSize()) : std::nullopt;
    }

    // Where the handle of the balance slider stands.
    std::optional<int> handle() const {
        const auto window = editor();
        return window ? handleAt(screen->pixels(*window), balanceSlider) : std::nullopt;
    }

    // Saves as a user does.
    void save() {
        ASSERT_TRUE(eventually(seconds(20), [this] { return screen->windowTitled(unsavedTitle); }))
            << "the session does not count as changed";
        const auto saved = [this] {
            return !screen->windowTitled(unsavedTitle) && !qtractor::parametersIn(session).empty();
        };
        for (int attempt = 0; attempt < 3 && !saved(); ++attempt) {
            screen->activate(*screen->windowTitled(mainTitle));
            screen->key(XK_s, XK_Control_L);
            eventually(seconds(10), saved);
        }
        ASSERT_TRUE(saved()) << "the session was not saved";
    }

    // Leaves by the main window's close button; Qtractor has no key for it.
    void quit() {
        const auto window = screen->windowTitled(mainTitle);
        ASSERT_TRUE(window);
        screen->close(*window);
        const Outcome end = host->wait(seconds(60));
        EXPECT_TRUE(end.inTime) << "Qtractor did not end";
        EXPECT_EQ(end.exitCode, 0) << end.output;
    }

    Observations calls() const { return observationsIn(record); }

    static Observations blocks(const Observations& all) {
        Observations blocks;
        std::copy_if(all.begin(), all.end(), std::back_inserter(blocks),
                     [](const Observation& call) { return call.kind == Kind::plays; });
        return blocks;
    }

    static Observations asked(VstInt32 opcode, const Observations& all) {
        Observations asked;
        std::copy_if(all.begin(), all.end(), std::back_inserter(asked),
                     [=](const Observation& call) { return call.is(Kind::asks, opcode); });
        return asked;
    }

    HostHome home{observer()};
    std::filesystem::path record = home / "observations";
    std::filesystem::path session = home / "home/session.qtr";
    std::unique_ptr<JackServer> jack;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<Program> host;
};

TEST_F(QtractorWindow, PlaysBlockAfterBlockOnTheAudioThread) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(eventually(seconds(60), [this] { return blocks(calls()).size() >= 100; }));
    quit();
    const Observations all = calls();
    std::set<std::string> threads;
    for (const Observation& block : blocks(all)) {
        EXPECT_EQ(block.value, JackServer::blockFrames);
        threads.insert(block.thread);
    }
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_FALSE(threads.contains("main"));
    const Observations rates = asked(effSetSampleRate, all);
    ASSERT_FALSE(rates.empty());
    EXPECT_EQ(rates.back().opt, static_cast<float>(JackServer::rate));
    EXPECT_TRUE(all.back().is(Kind::asks, effClose));
}

TEST_F(QtractorWindow, DragOnASliderIsOneGestureAndIsBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    const Observations opened = calls();
    const std::size_t before = opened.size();
    const std::string editorThread = asked(effEditOpen, opened).back().thread;
    EXPECT_EQ(editorThread, "main");
    dragSlider(*screen, *editor(), balanceSlider, 0.5, draggedTo);

    Observations gesture;
    ASSERT_TRUE(eventually(seconds(20), [&] {
        gesture = gestureOn(balanceSlider.parameter, calls(), before);
        return isOver(gesture);
    }));
    const float last = lastOfRisingGesture(gesture, editorThread);
    EXPECT_NEAR(last, draggedTo, 0.01);
    const auto shown = [this] {
        return std::abs(handle().value_or(0) - handlePosition(draggedTo)) <= handleTolerance;
    };
    EXPECT_TRUE(eventually(seconds(10), shown)) << "the handle did not follow";

    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    ASSERT_EQ(saved.size(), 9U);
    EXPECT_NEAR(saved.at("balance"), last, 1e-5F);
    quit();
    const Observations first = calls();
    EXPECT_EQ(asked(effEditOpen, first).size(), asked(effEditClose, first).size());
    const Observations chunks = asked(effGetChunk, first);
    ASSERT_FALSE(chunks.empty());

    // In a new process the chunk comes first, then each parameter.
    ASSERT_NO_FATAL_FAILURE(start());
    const Observations second = calls();
    const auto loaded = std::find_if(second.begin(), second.end(), [](const Observation& call) {
        return call.is(Kind::asks, effSetChunk);
    });
    ASSERT_NE(loaded, second.end()) << "no chunk was given back";
    EXPECT_EQ(loaded->value, chunks.back().result);
    std::map<VstInt32, float> set;
    for (auto call = loaded; call != second.end(); ++call)
        if (call->kind == Kind::sets)
            set[call->index] = call->opt;
    EXPECT_EQ(set.size(), 9U);
    EXPECT_NEAR(set[balanceSlider.parameter], last, 1e-5F);
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(eventually(seconds(10), shown)) << "the handle does not stand where it was left";
    quit();
}

} // namespace
} // namespace mirelon::test
