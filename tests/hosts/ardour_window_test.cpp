// The plug-in's editor in Ardour's window.
#include "tests/editor/editorhost.h"
#include "tests/hosts/ardour.h"
#include "tests/hosts/ardoursession.h"
#include "tests/hosts/observations.h"
#include "tests/hosts/screen.h"

#include <X11/keysym.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <optional>

namespace mirelon::test {
namespace {

using std::chrono::seconds;
using Kind = Observation::Kind;

constexpr int kWidth = 0;
constexpr int kBalance = 2;

// Where the editor's sliders stand, at scale 1.
constexpr int sliderLeft = 63;
constexpr int sliderRight = 239;
constexpr int sliderMiddle = 151;
constexpr int widthRow = 59;
constexpr int balanceRow = 157;

constexpr auto pluginTitle = "stereo: Dravik Mirelon";
constexpr auto mainTitle = "session - Ardour";

// The middle of the slider's white handle in the row of pixels at `y`.
std::optional<int> handleAt(const Pixels& editor, int y) {
    int sum = 0;
    int count = 0;
    for (int x = sliderLeft; x < sliderRight && x < editor.width && y < editor.height; ++x) {
        const bool white = (editor.at(x, y) >> 16) >= 0xF0;
        sum += white ? x : 0;
        count += white ? 1 : 0;
    }
    return count == 0 ? std::nullopt : std::optional(sum / count);
}

class ArdourWindow : public ::testing::Test {
  protected:
    void SetUp() override {
        SKIP_WITHOUT_ARDOUR();
        if (!Screen::hasWindowManager())
            GTEST_SKIP() << "openbox is not installed (scripts/setup)";
        home.addEnvironment(observing(record));
        home.addEnvironment({{"DISPLAY", Screen::display()}});
        ASSERT_THAT(ardour::scan(home).output, ::testing::HasSubstr("<VST2Info "));
        ardour::runScript(home, "insert.lua",
                          {session.path(), std::to_string(ArdourSession::rate)});
        session.putOnTrack(material(std::size_t{10} * ArdourSession::rate));
    }

    // Starts Ardour and waits for the plug-in's window.
    void start() {
        session.showPluginWindowAt(700, 600);
        std::filesystem::remove(record);
        ardour::prepareFirstStart(home);
        screen = std::make_unique<Screen>(home.environment(), home / "openbox.log");
        host = std::make_unique<Program>(
            std::vector<std::string>{ardour::program(), "--no-splash", "--no-announcements",
                                     session.path() + "/session.ardour"},
            home.environment(ardour::variables()), home / "ardour.log");
        ASSERT_TRUE(eventually(seconds(60), [this] {
            reportedSize = sizeAnswered();
            return !reportedSize.empty() && editor().has_value();
        })) << contentsOf(home / "ardour.log");
        editorThread = theCall(effEditOpen).thread;
    }

    // The editor's own window in the host's; none while it is hidden.
    std::optional<Screen::WindowId> editor() const {
        const auto window = screen->windowTitled(pluginTitle);
        return window ? screen->inside(*window, reportedSize) : std::nullopt;
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
    std::string sizeAnswered() const { return theCall(effEditGetRect).extra; }

    // The main window shows the tracks at first; the key is lost while it is busy.
    void showMixer(Screen::WindowId main) {
        const Pixels tracks = screen->pixels(main);
        const auto changed = [&] {
            const Pixels now = screen->pixels(main);
            std::size_t different = 0;
            for (std::size_t i = 0; i < tracks.rgb.size() && i < now.rgb.size(); ++i)
                different += now.rgb[i] != tracks.rgb[i] ? 1 : 0;
            return different > tracks.rgb.size() / 4;
        };
        for (int attempt = 0; attempt < 5 && !changed(); ++attempt) {
            screen->activate(main);
            screen->key(XK_m, XK_Alt_L);
            eventually(seconds(3), changed);
        }
    }

    // Saves and leaves as a user does.
    void quit() {
        const auto window = screen->windowTitled(mainTitle);
        ASSERT_TRUE(window);
        screen->activate(*window);
        const auto savedAt = std::filesystem::last_write_time(home / "session/session.ardour");
        screen->key(XK_s, XK_Control_L);
        EXPECT_TRUE(eventually(seconds(15), [&] {
            return std::filesystem::last_write_time(home / "session/session.ardour") != savedAt;
        })) << "the session was not saved";
        screen->key(XK_q, XK_Control_L);
        const Outcome end = host->wait(seconds(60));
        EXPECT_TRUE(end.inTime) << "Ardour did not end";
        EXPECT_EQ(end.exitCode, 0) << end.output;
    }

    HostHome home{observer()};
    std::filesystem::path record = home / "observations";
    ArdourSession session{home / "session"};
    std::unique_ptr<Screen> screen;
    std::unique_ptr<Program> host;
    std::string reportedSize;
    std::string editorThread;
};

TEST_F(ArdourWindow, ShowsTheWholeEditorAtTheReportedSize) {
    ASSERT_NO_FATAL_FAILURE(start());
    // The same editor in a bare window, after some silence as well.
    EditorHost bare;
    ASSERT_EQ(bare.open(), 1);
    bare.effect->resume();
    std::vector<float> silence(1024);
    float* channels[] = {silence.data(), silence.data()};
    bare.effect->process(channels, channels, 1024);
    bare.run(std::chrono::milliseconds(300));
    const Pixels expected = bare.pixels();
    ASSERT_EQ(reportedSize, std::to_string(expected.width) + 'x' + std::to_string(expected.height));

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

TEST_F(ArdourWindow, DragOnASliderIsOneGestureOnTheEditorsThread) {
    ASSERT_NO_FATAL_FAILURE(start());
    const std::size_t before = calls().size();
    const auto window = editor();
    ASSERT_TRUE(window);
    screen->pointAt(*window, sliderMiddle, balanceRow);
    screen->press();
    for (int x = sliderMiddle; x <= sliderMiddle + 40; x += 4)
        screen->pointAt(*window, x, balanceRow);
    screen->release();

    Observations gesture;
    EXPECT_TRUE(eventually(seconds(10), [&] {
        gesture.clear();
        const Observations all = calls();
        for (auto call = all.begin() + static_cast<std::ptrdiff_t>(before); call != all.end();
             ++call)
            if (call->kind == Kind::tells && call->index == kBalance &&
                (call->opcode == audioMasterBeginEdit || call->opcode == audioMasterAutomate ||
                 call->opcode == audioMasterEndEdit))
                gesture.push_back(*call);
        return !gesture.empty() && gesture.back().opcode == audioMasterEndEdit;
    }));
    ASSERT_GE(gesture.size(), 4U);
    EXPECT_EQ(gesture.front().opcode, audioMasterBeginEdit);
    EXPECT_EQ(gesture.back().opcode, audioMasterEndEdit);
    float last = 0.5F;
    for (std::size_t i = 0; i < gesture.size(); ++i) {
        EXPECT_EQ(gesture[i].thread, editorThread);
        if (i == 0 || i + 1 == gesture.size())
            continue;
        EXPECT_EQ(gesture[i].opcode, audioMasterAutomate);
        EXPECT_GE(gesture[i].opt, last);
        last = gesture[i].opt;
    }
    EXPECT_NE(editorThread, "main"); // Ardour gives editors a thread of their own
    EXPECT_GT(last, 0.6F);
    EXPECT_TRUE(eventually(seconds(5), [&] {
        return handleAt(screen->pixels(*window), balanceRow).value_or(0) > sliderMiddle + 25;
    })) << "the handle did not follow";
}

TEST_F(ArdourWindow, AutomationOfTheHostMovesTheSlider) {
    ardour::runScript(home, "automate.lua",
                      {session.path(), std::to_string(kWidth), "0=0.5", "48000=0.9"});
    ASSERT_NO_FATAL_FAILURE(start());
    const auto window = editor();
    ASSERT_TRUE(window);
    ASSERT_TRUE(eventually(seconds(10), [&] {
        return std::abs(handleAt(screen->pixels(*window), widthRow).value_or(0) - sliderMiddle) <=
               3;
    })) << "the slider does not stand in the middle";

    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    screen->activate(*main);
    screen->key(XK_space);
    EXPECT_TRUE(eventually(seconds(15), [&] {
        return handleAt(screen->pixels(*window), widthRow).value_or(0) > sliderMiddle + 40;
    })) << "the slider did not move";
    const Observations all = calls();
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), [this](const Observation& call) {
        return call.kind == Kind::sets && call.index == kWidth && call.opt > 0.6F &&
               call.thread != "main" && call.thread != editorThread;
    })) << "the audio thread set no parameter";
}

TEST_F(ArdourWindow, IsHiddenAndShownFiveTimesAndTheHostQuitsCleanly) {
    ASSERT_NO_FATAL_FAILURE(start());
    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    const auto hide = [this] {
        screen->close(*screen->windowTitled(pluginTitle));
        return eventually(seconds(10), [this] { return !screen->windowTitled(pluginTitle); });
    };
    ASSERT_TRUE(hide());
    showMixer(*main);

    // A double click on the plug-in's name in the track's strip shows its
    // window, and a second one would hide it again. The strip is the first.
    constexpr int entryX = 335;
    constexpr int entryY = 208;
    const auto show = [&] {
        return eventually(seconds(60), [&] {
            screen->activate(*main); // a click that raises it first is no part of two
            screen->pointAt(*main, entryX - 3, entryY);
            screen->pointAt(*main, entryX, entryY);
            screen->doubleClick();
            return eventually(seconds(5), [this] { return editor().has_value(); });
        });
    };
    for (int time = 1; time <= 5; ++time) {
        ASSERT_TRUE(show()) << "the window was not shown the " << time << ". time";
        EXPECT_TRUE(eventually(seconds(5),
                               [this] {
                                   const auto window = editor();
                                   return window &&
                                          handleAt(screen->pixels(*window), balanceRow).has_value();
                               }))
            << "the window is empty the " << time << ". time";
        ASSERT_TRUE(hide()) << "the window was not hidden the " << time << ". time";
    }
    quit();
    // Ardour keeps a hidden editor open; in the end all is closed, in order.
    EXPECT_EQ(countOf(effEditOpen), countOf(effEditClose));
    const Observations all = calls();
    EXPECT_TRUE(all.back().is(Kind::asks, effClose));
}

} // namespace
} // namespace mirelon::test
