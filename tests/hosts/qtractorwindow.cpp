#include "tests/hosts/qtractorwindow.h"

#include "tests/hosts/windowsize.h"

#include <X11/keysym.h>

#include <chrono>
#include <cstdlib>

namespace mirelon::test {

using std::chrono::seconds;

namespace {

constexpr auto mainTitle = "session.qtr";
constexpr auto unsavedTitle = "session.qtr [modified]";
constexpr auto mixerTitle = "Mixer";
constexpr auto pluginTitle = "Dravik Mirelon - ";

} // namespace

void QtractorWindowTest::SetUp() {
    SKIP_WITHOUT_QTRACTOR();
    if (!JackServer::isInstalled())
        GTEST_SKIP() << "the JACK server is not installed (scripts/setup hosts)";
    if (!Screen::hasWindowManager())
        GTEST_SKIP() << "openbox is not installed (scripts/setup)";
    home.addEnvironment({{"DISPLAY", Screen::display()}});
    jack = std::make_unique<JackServer>(home);
    home.addEnvironment(jack->variables());
    screen = std::make_unique<Screen>(home.environment(), home / "openbox.log");
}

void QtractorWindowTest::launch() {
    host =
        std::make_unique<Program>(std::vector<std::string>{qtractor::program(), session.string()},
                                  home.environment(qtractor::variables()), home / "qtractor.log");
    ASSERT_TRUE(eventually(seconds(60), [this] { return screen->windowTitled(mainTitle); }))
        << contentsOf(home / "qtractor.log") << contentsOf(home / "openbox.log");
}

void QtractorWindowTest::openEditor() {
    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    for (int attempt = 0; attempt < 5 && !screen->windowTitled(mixerTitle); ++attempt) {
        screen->activate(*main);
        screen->key(XK_F9);
        eventually(seconds(10), [this] { return screen->windowTitled(mixerTitle); });
    }
    const auto mixer = screen->windowTitled(mixerTitle);
    ASSERT_TRUE(mixer) << "the mixer was not shown";
    // The output busses stand at the mixer's right end.
    openEditorAt(mixerTitle, {screen->pixels(*mixer).width - 115, 47});
}

void QtractorWindowTest::openEditorOfTrack() {
    openEditorAt(mainTitle, {185, 180});
}

void QtractorWindowTest::switchPluginOfTrack() {
    clickMain({158, 180});
}

// `entry` is the plug-in's name in the window of this title.
void QtractorWindowTest::openEditorAt(const std::string& title, const Position& entry) {
    const auto window = screen->windowTitled(title);
    ASSERT_TRUE(window);
    ASSERT_TRUE(eventually(seconds(60), [&] {
        screen->activate(*window);
        screen->pointAt(*window, {entry.x - 3, entry.y});
        screen->pointAt(*window, entry);
        // One more on a slow machine would hide it again.
        if (!screen->windowTitled(pluginTitle))
            screen->doubleClick();
        return eventually(seconds(10), [this] { return handle().has_value(); });
    })) << "the editor was not shown";
}

void QtractorWindowTest::closeEditor() {
    const auto window = screen->windowTitled(pluginTitle);
    ASSERT_TRUE(window);
    screen->close(*window);
    ASSERT_TRUE(eventually(seconds(20), [this] { return !screen->windowTitled(pluginTitle); }));
}

std::optional<Screen::WindowId> QtractorWindowTest::editorAt(int shownPercent) const {
    const auto window = screen->windowTitled(pluginTitle);
    return window ? screen->inside(*window, editorSize(shownPercent)) : std::nullopt;
}

void QtractorWindowTest::changeSize() {
    const auto choose = [this](int wanted) {
        chooseSize(
            *screen, [this](int shown) { return editorAt(shown); }, percent, wanted);
        percent = wanted;
    };
    ASSERT_NO_FATAL_FAILURE(choose(150));
    EXPECT_TRUE(comesToLookAsAt(150, *screen, *editor()));
    EXPECT_TRUE(comesToFillItsWindow());
    ASSERT_NO_FATAL_FAILURE(closeEditor());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    raiseEditor();
    EXPECT_TRUE(comesToLookAsAt(150, *screen, *editor()));
    EXPECT_TRUE(comesToFillItsWindow());
    ASSERT_NO_FATAL_FAILURE(choose(100));
    EXPECT_TRUE(comesToLookAsAt(100, *screen, *editor()));
}

bool QtractorWindowTest::comesToFillItsWindow() const {
    const auto window = screen->windowTitled(pluginTitle);
    return window && eventually(seconds(10), [&] {
               const Pixels all = screen->pixels(*window);
               return std::to_string(all.width) + 'x' + std::to_string(all.height) ==
                      editorSize(percent);
           });
}

std::optional<int> QtractorWindowTest::handle() const {
    const auto window = editor();
    return window ? handleAt(screen->pixels(*window), balanceSlider) : std::nullopt;
}

bool QtractorWindowTest::standsAt(double value) const {
    return std::abs(handle().value_or(0) - handlePosition(value)) <= handleTolerance;
}

void QtractorWindowTest::chooseTheThirdPreset() {
    for (int preset = 1; preset <= 3; ++preset)
        screen->click(*editor(), rockerRight);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
}

Pixels QtractorWindowTest::presetPanel() const {
    const Pixels window = screen->pixels(*editor());
    return window.part(84, 312, 206, window.height);
}

void QtractorWindowTest::clickMain(Position at) {
    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    screen->activate(*main);
    screen->click(*main, at);
    raiseEditor();
}

void QtractorWindowTest::press(unsigned long keysym, unsigned long modifier) {
    screen->activate(*screen->windowTitled(mainTitle));
    screen->key(keysym, modifier);
    raiseEditor();
}

// The key is lost while the host is busy.
void QtractorWindowTest::startTransport(const std::function<bool()>& plays) {
    ASSERT_TRUE(eventually(seconds(60), [&] {
        press(XK_space);
        return eventually(seconds(15), plays);
    })) << contentsOf(home / "qtractor.log");
}

void QtractorWindowTest::raiseEditor() {
    if (const auto window = screen->windowTitled(pluginTitle))
        screen->activate(*window);
}

bool QtractorWindowTest::countsAsChanged() const {
    return screen->windowTitled(unsavedTitle).has_value();
}

void QtractorWindowTest::save() {
    ASSERT_TRUE(eventually(seconds(20), [this] { return countsAsChanged(); }))
        << "the session does not count as changed";
    const auto saved = [this] {
        return !countsAsChanged() && !qtractor::parametersIn(session).empty();
    };
    for (int attempt = 0; attempt < 3 && !saved(); ++attempt) {
        press(XK_s, XK_Control_L);
        eventually(seconds(10), saved);
    }
    ASSERT_TRUE(saved()) << "the session was not saved";
}

void QtractorWindowTest::quit() {
    if (countsAsChanged()) {
        ASSERT_NO_FATAL_FAILURE(save());
    }
    const auto window = screen->windowTitled(mainTitle);
    ASSERT_TRUE(window);
    screen->close(*window);
    const Outcome end = host->wait(seconds(60));
    EXPECT_TRUE(end.inTime) << "Qtractor did not end";
    EXPECT_EQ(end.exitCode, 0) << end.output;
}

} // namespace mirelon::test
