// What the open editor costs and how fast it is, on an X server without a screen:
//   mirelon-windowbench PLUGIN [OTHER]
// OTHER is an earlier build to compare with. Both are measured in turns, each time
// in a process and on a server of their own. scripts/bench --window runs this.
#include "bench/windowhost.h"
#include "hosting/hosting.h"
#include "tests/support/windowdamage.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <glib.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace mirelon;
using namespace mirelon::bench;
using namespace std::chrono_literals;
using std::chrono::milliseconds;

constexpr auto period = 4s; // of each measurement
constexpr int rounds = 3;
constexpr std::array<const char*, 2> scales{"1", "3"};
constexpr auto automationInterval = 25ms; // 40 changes a second
constexpr auto audioInterval = 5ms;
constexpr VstInt32 audioFrames = 220;

// In the order of the table.
enum Figure {
    openTime,
    shownTime,
    ownCpu,
    serverCpu,
    glibPictures,
    fastPictures,
    equalPictures,
    slowPictures,
    motionTurns,
    figureCount
};
constexpr std::array<const char*, figureCount> figureNames{
    "opening, ms",
    "opening until all is drawn, ms",
    "40 changes a second: plug-in, % of a core",
    "40 changes a second: X server, % of a core",
    "meters, pictures a second: GLib's loop",
    "meters, pictures a second: idle 60 a second",
    "meters, pictures a second: idle 30 a second",
    "meters, pictures a second: idle 25 a second",
    "turns of the loop from a motion to the change",
};
using Figures = std::array<double, figureCount>;

// --- The host ---

class Host {
  public:
    explicit Host(const char* plugin)
        : module(plugin) {
        left.resize(audioFrames);
        right.resize(audioFrames);
    }

    void start() {
        effect.emplace(module, callbacks);
        const ERect rect = editorSize();
        const int width = rect.right - rect.left;
        window.emplace(width, rect.bottom - rect.top);
        constexpr double editorWidth = 324;
        scale = width / editorWidth;
    }
    ERect editorSize() const {
        ERect* rect = nullptr;
        effect->dispatch(effEditGetRect, 0, 0, &rect);
        return *rect;
    }
    void end() {
        effect.reset();
        window.reset();
    }
    void open() const {
        if (effect->dispatch(effEditOpen, 0, 0, window->asParent()) == 0)
            throw std::runtime_error("the editor does not open");
    }

    // One side after the other is louder, so that a meter never rests.
    void playBlock() {
        constexpr double turn = 20; // blocks
        const auto loud = static_cast<float>(0.5 + 0.4 * std::sin(++blocks / turn));
        std::ranges::fill(left, loud);
        std::ranges::fill(right, 1.0F - loud);
        std::array<float*, 2> channels{left.data(), right.data()};
        effect->process(channels.data(), channels.data(), audioFrames);
    }
    void automate() {
        constexpr double turn = 30; // changes
        effect->setParameter(0, static_cast<float>(0.5 + 0.4 * std::sin(++changes / turn)));
    }

    hosting::RecordingHost callbacks{hosting::Recording::off};
    hosting::Module module;
    std::optional<hosting::Effect> effect;
    std::optional<test::XWindow> window;
    double scale = 1.0;

  private:
    std::vector<float> left;
    std::vector<float> right;
    double blocks = 0;
    double changes = 0;
};

// --- What is measured ---

// Gives up after a second.
void waitUntilAllIsDrawn(const Host& host) {
    test::WindowDamage drawn(*host.window);
    const ERect size = host.editorSize();
    const long all = static_cast<long>(size.right - size.left) * (size.bottom - size.top);
    const auto end = Clock::now() + 1s;
    while (drawn.pixels() < all && Clock::now() < end)
        runFor(1ms, {{1ms, [&] { drawn.look(); }}}, true);
}

// Of new instances, after a first one.
void measureOpening(Host& host, Figures& figures) {
    constexpr int times = 7;
    std::vector<double> opened;
    std::vector<double> shown;
    for (int i = 0; i < times; ++i) {
        host.start();
        const auto begin = Clock::now();
        const auto sinceBegin = [begin] { return seconds(Clock::now() - begin) * 1000; };
        host.open();
        const double openedAfter = sinceBegin();
        waitUntilAllIsDrawn(host);
        if (i > 0) {
            opened.push_back(openedAfter);
            shown.push_back(sinceBegin());
        }
        host.end();
    }
    figures[openTime] = median(opened);
    figures[shownTime] = median(shown);
}

void measureAutomation(Host& host, Figures& figures) {
    const std::string server = serverStatFile();
    const Job automate{automationInterval, [&] { host.automate(); }};
    runFor(500ms, {automate}, true);
    const double ownBefore = ownSeconds();
    const double serverBefore = serverSeconds(server);
    runFor(period, {automate}, true);
    figures[ownCpu] = (ownSeconds() - ownBefore) / seconds(period) * 100;
    figures[serverCpu] = (serverSeconds(server) - serverBefore) / seconds(period) * 100;
}

// By GLib's loop, or by the host's idle alone.
double measurePictures(Host& host, std::optional<Clock::duration> idleInterval) {
    test::WindowDamage drawn(*host.window);
    std::vector<Job> jobs{{audioInterval, [&] {
                               host.playBlock();
                               drawn.look();
                           }}};
    if (idleInterval)
        jobs.push_back({*idleInterval, [&] { host.effect->dispatch(effEditIdle); }});
    runFor(500ms, jobs, !idleInterval);
    const int before = drawn.pictures();
    runFor(period, jobs, !idleInterval);
    return (drawn.pictures() - before) / seconds(period);
}

// On average, of a slider that is dragged to and fro.
double measureMotion(Host& host) {
    constexpr int motions = 60;
    constexpr int giveUp = 20;
    const auto pointAt = [&](double x) {
        constexpr double sliderY = 62;
        host.window->moveTo(x * host.scale, sliderY * host.scale);
    };
    constexpr double from = 100;
    pointAt(from);
    host.window->press();
    runFor(100ms, {}, true);
    int turns = 0;
    for (int i = 0; i < motions; ++i) {
        const float before = host.effect->parameter(0);
        pointAt(from + (i % 2 == 0 ? 40 : 0));
        for (int turn = 0; turn < giveUp && host.effect->parameter(0) == before; ++turn) {
            g_main_context_iteration(nullptr, TRUE); // asleep until there is something to do
            ++turns;
        }
        runFor(30ms, {}, true);
    }
    host.window->release();
    runFor(100ms, {}, true);
    return static_cast<double>(turns) / motions;
}

Figures measure(const char* plugin, const char* scale) {
    setenv("MIRELON_SCALE", scale, 1);
    test::VirtualDisplay::start();
    Figures figures{};
    Host host(plugin);
    measureOpening(host, figures);
    host.start();
    host.effect->resume();
    host.open();
    figures[motionTurns] = measureMotion(host);
    measureAutomation(host, figures);
    figures[glibPictures] = measurePictures(host, std::nullopt);
    figures[fastPictures] = measurePictures(host, Clock::duration(1s) / 60);
    figures[equalPictures] = measurePictures(host, Clock::duration(1s) / 30);
    figures[slowPictures] = measurePictures(host, 40ms);
    return figures;
}

Figures measureInAProcess(const char* plugin, const char* scale) {
    Figures figures{};
    const std::vector<double> found = measuredInAProcess(figures.size(), [&] {
        const Figures measured = measure(plugin, scale);
        return std::vector<double>(measured.begin(), measured.end());
    });
    std::ranges::copy(found, figures.begin());
    return figures;
}

void printTable(const char* scale, const std::vector<std::vector<Figures>>& ofBuilds) {
    std::printf("\nscale %s%*s\n", scale, 54,
                ofBuilds.size() > 1 ? "this   other   ratio" : "this");
    for (int figure = 0; figure < figureCount; ++figure) {
        std::vector<double> medians;
        medians.reserve(ofBuilds.size());
        for (const auto& runs : ofBuilds) {
            std::vector<double> values;
            values.reserve(runs.size());
            for (const Figures& run : runs)
                values.push_back(run.at(static_cast<std::size_t>(figure)));
            medians.push_back(median(values));
        }
        std::printf("  %-46s", figureNames.at(static_cast<std::size_t>(figure)));
        for (const double value : medians)
            std::printf(" %7.1f", value);
        if (medians.size() > 1 && medians[1] > 0)
            std::printf(" %7.2f", medians[0] / medians[1]);
        std::printf("\n");
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: mirelon-windowbench PLUGIN [OTHER]\n");
        return 2;
    }
    try {
        const std::vector<const char*> plugins(argv + 1, argv + argc);
        for (const char* scale : scales) {
            std::vector<std::vector<Figures>> ofBuilds(plugins.size());
            for (int round = 0; round < rounds; ++round)
                for (std::size_t i = 0; i < plugins.size(); ++i)
                    ofBuilds[i].push_back(measureInAProcess(plugins[i], scale));
            printTable(scale, ofBuilds);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mirelon-windowbench: %s\n", error.what());
        return 1;
    }
    return 0;
}
