// The LV2 plug-in with its window in jalv, in both of its toolkits.
#include "formats/lv2/names.h"
#include "tests/hosts/editorview.h"
#include "tests/hosts/jackserver.h"
#include "tests/hosts/lv2bundles.h"
#include "tests/hosts/observations.h"
#include "tests/hosts/openings.h"
#include "tests/hosts/screen.h"
#include "tests/hosts/windowsize.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

namespace mirelon::test {
namespace {

using std::chrono::seconds;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr SliderPlace balanceSlider = sliderPlaces[2];

class Jalv : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        if (!isExecutable(program()))
            GTEST_SKIP() << "jalv is not installed (scripts/setup hosts)";
        if (!JackServer::isInstalled())
            GTEST_SKIP() << "the JACK server is not installed (scripts/setup hosts)";
        if (!Screen::hasWindowManager())
            GTEST_SKIP() << "openbox is not installed (scripts/setup)";
        home.addEnvironment(observedLv2Environment(home / "lv2", record));
        home.addEnvironment({{"DISPLAY", Screen::display()}});
        jack = std::make_unique<JackServer>(home);
        home.addEnvironment(jack->variables());
        screen = std::make_unique<Screen>(home.environment(), home / "openbox.log");
    }

    static std::string program() { return std::string("/usr/bin/jalv.") + GetParam(); }

    void start(const std::vector<std::string>& options = {}) {
        std::vector<std::string> command{program()};
        command.insert(command.end(), options.begin(), options.end());
        command.emplace_back(lv2::pluginUri);
        host = std::make_unique<Program>(command, home.environment(), log);
        ASSERT_TRUE(eventually(seconds(30), [this] { return handle().has_value(); }))
            << contentsOf(log) << contentsOf(home / "openbox.log");
    }

    std::optional<Screen::WindowId> editor() const { return editorAt(percent); }
    std::optional<Screen::WindowId> editorAt(int shownPercent) const {
        const auto window = screen->windowTitled("Dravik Mirelon");
        return window ? screen->inside(*window, editorSize(shownPercent)) : std::nullopt;
    }
    std::optional<int> handle() const {
        const auto window = editor();
        return window ? handleAt(screen->pixels(*window), balanceSlider) : std::nullopt;
    }
    bool standsAt(double value) const {
        return std::abs(handle().value_or(0) - handlePosition(value)) <= handleTolerance;
    }

    void quit() {
        kill(host->id(), SIGINT);
        const Outcome end = host->wait(seconds(20));
        EXPECT_TRUE(end.inTime) << "jalv did not end";
        EXPECT_EQ(end.exitCode, 0) << end.output;
    }

    HostHome home{MIRELON_PLUGIN_FILE};
    std::filesystem::path record = home / "observations";
    std::filesystem::path log = home / "jalv.log";
    std::unique_ptr<JackServer> jack;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<Program> host;
    int percent = 100; // the editor's size
};
INSTANTIATE_TEST_SUITE_P(Toolkits, Jalv, testing::Values("gtk3", "qt5"),
                         [](const auto& info) { return std::string(info.param); });

TEST_P(Jalv, ShowsTheWindowAtItsOwnSizeAndQuitsWithoutAComplaint) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(standsAt(0.5));
    quit();
    // Qt speaks of windows of its own that are gone, within a line.
    EXPECT_THAT(contentsOf(log), Not(HasSubstr("\nerror")));
    EXPECT_THAT(contentsOf(log), Not(HasSubstr("\nwarning")));
}

// It takes no word of a gesture's ends: what it hears are the numbers.
TEST_P(Jalv, HearsADragAsRisingNumbersOfOnePortAndLeavesTheSliderThere) {
    ASSERT_NO_FATAL_FAILURE(start());
    const std::size_t before = observationsIn(record).size();
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.7);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    std::this_thread::sleep_for(seconds(1)); // for the host's echo
    EXPECT_TRUE(standsAt(0.7));
    quit();
    Observations heard = observationsIn(record);
    heard.erase(heard.begin(), heard.begin() + static_cast<std::ptrdiff_t>(before));
    std::erase_if(heard,
                  [](const Observation& call) { return call.kind != Observation::Kind::tells; });
    ASSERT_GE(heard.size(), 2U);
    for (const Observation& call : heard) {
        EXPECT_TRUE(call.is(Observation::Kind::tells, audioMasterAutomate));
        EXPECT_EQ(call.index, balanceSlider.parameter);
    }
    EXPECT_TRUE(std::ranges::is_sorted(heard, {}, &Observation::opt));
    EXPECT_NEAR(heard.back().opt, 20.0F, 1.0F);
}

TEST_P(Jalv, TakesAnotherSizeAtOnceAndHasItInTheNextRun) {
    const auto choose = [this](int wanted) {
        chooseSize(
            *screen, [this](int shown) { return editorAt(shown); }, percent, wanted);
        percent = wanted;
    };
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(choose(150));
    EXPECT_TRUE(comesToLookAsAt(150, *screen, *editor()));
    ASSERT_NO_FATAL_FAILURE(choose(100));
    EXPECT_TRUE(comesToLookAsAt(100, *screen, *editor()));
    ASSERT_NO_FATAL_FAILURE(choose(150));
    quit();
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(comesToLookAsAt(150, *screen, *editor()));
    quit();
}

// It shows the window from its start to its end.
TEST_P(Jalv, ShowsTheWindowInManyRunsOneAfterAnother) {
    for (int run = 1; run <= openings(); ++run) {
        ASSERT_NO_FATAL_FAILURE(start()) << "run " << run;
        EXPECT_TRUE(standsAt(0.5)) << "run " << run;
        quit();
    }
}

// Only this one takes options.
class JalvWithOptions : public Jalv {};
INSTANTIATE_TEST_SUITE_P(Toolkits, JalvWithOptions, testing::Values("gtk3"),
                         [](const auto& info) { return std::string(info.param); });

TEST_P(JalvWithOptions, ShowsTheNumberThatAPortHas) {
    ASSERT_NO_FATAL_FAILURE(start({"-c", "balance=25"}));
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.75); }));
    quit();
}

TEST_P(JalvWithOptions, CarriesTheWindowsQuestionAndThePlugInsAnswer) {
    ASSERT_NO_FATAL_FAILURE(start({"--dump"}));
    std::this_thread::sleep_for(seconds(1)); // nothing shows it before the end
    quit();
    const std::string said = contentsOf(log); // which it writes when it ends
    const auto question = said.find("mirelon#Get");
    ASSERT_NE(question, std::string::npos) << said;
    EXPECT_NE(said.find("mirelon#Bank", question), std::string::npos) << said;
}

} // namespace
} // namespace mirelon::test
