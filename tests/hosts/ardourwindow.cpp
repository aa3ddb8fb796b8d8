#include "tests/hosts/ardourwindow.h"

#include "tests/hosts/windowsize.h"

#include <X11/keysym.h>

#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <cstdlib>

namespace mirelon::test {

using std::chrono::seconds;

void ArdourWindowTest::SetUp() {
    SKIP_WITHOUT_ARDOUR();
    if (!Screen::hasWindowManager())
        GTEST_SKIP() << "openbox is not installed (scripts/setup)";
    home.addEnvironment({{"DISPLAY", Screen::display()}});
    ASSERT_NO_FATAL_FAILURE(insertPlugin());
    session.putOnTrack(material(std::size_t{10} * ArdourSession::rate));
}

void ArdourWindowTest::insertPlugin() {
    ASSERT_THAT(ardour::scan(home).output, ::testing::HasSubstr("<VST2Info "));
    ardour::runScript(home, "insert.lua", {session.path(), std::to_string(ArdourSession::rate)});
}

void ArdourWindowTest::start() {
    session.showPluginWindowAt(700, 600, pluginType());
    ardour::prepareFirstStart(home);
    launch();
}

void ArdourWindowTest::launch() {
    if (screen == nullptr)
        screen = std::make_unique<Screen>(home.environment(), home / "openbox.log");
    host = std::make_unique<Program>(
        std::vector<std::string>{ardour::program(), "--no-splash", "--no-announcements",
                                 session.path() + "/session.ardour"},
        home.environment(ardour::variables(home)), home / "ardour.log");
    ASSERT_TRUE(eventually(seconds(60), [this] { return editor().has_value(); }))
        << contentsOf(home / "ardour.log");
}

std::optional<Screen::WindowId> ArdourWindowTest::editorAt(int shownPercent) const {
    const auto window = screen->windowTitled(pluginTitle);
    return window ? screen->inside(*window, shownSize(shownPercent)) : std::nullopt;
}

std::optional<int> ArdourWindowTest::handle(const SliderPlace& slider) const {
    const auto window = editor();
    return window ? handleAt(screen->pixels(*window), slider) : std::nullopt;
}

bool ArdourWindowTest::standsAt(const SliderPlace& slider, double value) const {
    return std::abs(handle(slider).value_or(0) - handlePosition(value)) <= handleTolerance;
}

bool ArdourWindowTest::hideEditor() const {
    screen->close(*screen->windowTitled(pluginTitle));
    return eventually(seconds(10), [this] { return !screen->windowTitled(pluginTitle); });
}

// A second double click would hide it again. The strip is the first; how low its
// line is depends on the fonts of the machine.
bool ArdourWindowTest::showEditor() {
    constexpr std::array lines{208, 195, 202, 189, 214};
    const auto main = screen->windowTitled(mainTitle);
    return main && eventually(seconds(90), [&] {
               const Position entry{335, lines.at(line)};
               screen->activate(*main); // a click that raises it first is no part of two
               screen->pointAt(*main, {entry.x - 3, entry.y});
               screen->pointAt(*main, entry);
               screen->doubleClick();
               const bool shown = eventually(seconds(5), [this] { return editor().has_value(); });
               if (!shown)
                   line = (line + 1) % lines.size();
               return shown;
           });
}

void ArdourWindowTest::hideAndShowEditor(int times) {
    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    ASSERT_TRUE(hideEditor());
    showMixer(*main);
    for (int time = 1; time <= times; ++time) {
        ASSERT_TRUE(showEditor()) << "the window was not shown the " << time << ". time";
        EXPECT_TRUE(eventually(seconds(5), [this] { return handle(sliderPlaces[0]).has_value(); }))
            << "the window is empty the " << time << ". time";
        ASSERT_TRUE(hideEditor()) << "the window was not hidden the " << time << ". time";
    }
}

void ArdourWindowTest::changeSize() {
    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    const auto choose = [this](int wanted) {
        chooseSize(
            *screen, [this](int shown) { return editorAt(shown); }, percent, wanted);
        percent = wanted;
    };
    ASSERT_NO_FATAL_FAILURE(choose(150));
    EXPECT_TRUE(comesToLookAsAt(150, *screen, *editor()));
    EXPECT_EQ(screen->pixels(*screen->windowTitled(pluginTitle)).width, 486);
    ASSERT_TRUE(hideEditor());
    showMixer(*main);
    ASSERT_TRUE(showEditor());
    EXPECT_TRUE(comesToLookAsAt(150, *screen, *editor()));
    ASSERT_NO_FATAL_FAILURE(choose(100));
    EXPECT_TRUE(comesToLookAsAt(100, *screen, *editor()));
}

void ArdourWindowTest::pressSpace() {
    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    screen->activate(*main);
    screen->key(XK_space);
}

void ArdourWindowTest::expectToRise(const SliderPlace& slider, double value) const {
    EXPECT_TRUE(eventually(seconds(15), [&] {
        return handle(slider).value_or(0) > handlePosition(value);
    })) << "the slider did not move";
}

// The main window shows the tracks at first; the key is lost while it is busy.
void ArdourWindowTest::showMixer(Screen::WindowId main) {
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

void ArdourWindowTest::quit() {
    const auto window = screen->windowTitled(mainTitle);
    ASSERT_TRUE(window);
    screen->activate(*window);
    const auto savedAt = std::filesystem::last_write_time(home / "session/session.ardour");
    screen->key(XK_s, XK_Control_L);
    EXPECT_TRUE(eventually(seconds(15), [&] {
        return std::filesystem::last_write_time(home / "session/session.ardour") != savedAt;
    })) << "the session was not saved";
    // A busy machine loses the key now and then.
    for (int attempt = 0; attempt < 3 && host->isRunning(); ++attempt) {
        if (const auto main = screen->windowTitled(mainTitle))
            screen->activate(*main);
        screen->key(XK_q, XK_Control_L);
        eventually(seconds(30), [this] { return !host->isRunning(); });
    }
    const Outcome end = host->wait(seconds(30));
    EXPECT_TRUE(end.inTime) << "Ardour did not end";
    EXPECT_EQ(end.exitCode, 0) << end.output;
}

} // namespace mirelon::test
