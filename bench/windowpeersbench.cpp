// What any effect's open editor costs its host and the X server without a screen:
//   mirelon-windowpeersbench PLUGIN...
// All are measured in turns, each time in a process and on a server of their own.
// scripts/bench --window runs this with the plug-in and those of other makers that are
// installed.
#include "bench/windowhost.h"
#include "hosting/editorwindow.h"
#include "hosting/hosting.h"
#include "hosting/residentmemory.h"
#include "tests/support/xwindow.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace mirelon;
using namespace mirelon::bench;
using namespace std::chrono_literals;

constexpr auto period = 4s; // of each measurement
constexpr int rounds = 3;
constexpr auto automationInterval = 25ms; // 40 changes a second
constexpr auto idleInterval = 33ms;
constexpr int warmOpenings = 5;
constexpr int openings = 50;

// In the order of the table.
enum Figure {
    openTime,
    openCpu,
    restingCpu,
    restingServer,
    automatedCpu,
    automatedServer,
    growth,
    figureCount
};
constexpr std::array<const char*, figureCount> figureNames{
    "opening, ms",
    "opening, closing and 0.2 s between: processor ms",
    "at rest: plug-in, % of a core",
    "at rest: X server, % of a core",
    "40 changes a second: plug-in, % of a core",
    "40 changes a second: X server, % of a core",
    "memory after 50 more openings, KiB",
};

// Gives the editor both that hosts give: its idle command and GLib's loop.
class Window {
  public:
    explicit Window(hosting::Effect& effect)
        : effect(effect) {
        constexpr hosting::EditorSize usual{600, 400};
        const auto size = hosting::editorSize(effect).value_or(usual);
        window.emplace(size.width, size.height);
    }
    void open() {
        if (effect.dispatch(effEditOpen, 0, 0, window->asParent()) == 0)
            throw std::runtime_error("the editor does not open");
    }
    void close() { effect.dispatch(effEditClose); }
    void run(Clock::duration time, std::vector<Job> jobs = {}) {
        jobs.push_back({idleInterval, [&] { effect.dispatch(effEditIdle); }});
        runFor(time, std::move(jobs), true);
    }

  private:
    hosting::Effect& effect;
    std::optional<test::XWindow> window;
};

struct Load {
    double own;
    double server;
};

// Per cent of a core, of a window that is open.
Load loadOf(Window& window, const std::vector<Job>& jobs) {
    const std::string server = serverStatFile();
    window.run(500ms, jobs);
    const double ownBefore = ownSeconds();
    const double serverBefore = serverSeconds(server);
    window.run(period, jobs);
    return {(ownSeconds() - ownBefore) / seconds(period) * 100,
            (serverSeconds(server) - serverBefore) / seconds(period) * 100};
}

void measureOpenings(Window& window, std::vector<double>& figures) {
    std::vector<double> times;
    const auto openAndClose = [&] {
        const auto begin = Clock::now();
        window.open();
        times.push_back(seconds(Clock::now() - begin) * 1000);
        window.run(200ms);
        window.close();
        window.run(20ms);
    };
    for (int i = 0; i < warmOpenings; ++i)
        openAndClose();
    times.clear();
    const std::size_t before = hosting::residentMemory();
    const double cpuBefore = ownSeconds();
    for (int i = 0; i < openings; ++i)
        openAndClose();
    constexpr double kibi = 1024;
    figures[growth] =
        (static_cast<double>(hosting::residentMemory()) - static_cast<double>(before)) / kibi;
    figures[openCpu] = (ownSeconds() - cpuBefore) * 1000 / openings;
    figures[openTime] = median(times);
}

// The first parameter whose every place has a text of its own: a switch is hardly drawn
// anew when it is automated. The first of all when there is none.
VstInt32 sliderOf(hosting::Effect& effect) {
    for (VstInt32 index = 0; index < effect.record().numParams; ++index) {
        const float before = effect.parameter(index);
        std::set<std::string> texts;
        constexpr std::array places{0.1F, 0.3F, 0.5F, 0.7F, 0.9F};
        for (const float place : places) {
            effect.setParameter(index, place);
            texts.insert(effect.parameterDisplay(index));
        }
        effect.setParameter(index, before);
        if (texts.size() == places.size())
            return index;
    }
    return 0;
}

std::vector<double> measure(const std::string& plugin) {
    test::VirtualDisplay::start();
    hosting::RecordingHost callbacks{hosting::Recording::off};
    const hosting::Module module(plugin);
    hosting::Effect effect(module, callbacks);
    effect.resume();
    std::vector<double> figures(figureCount);
    Window window(effect);
    measureOpenings(window, figures);
    window.open();
    const Load resting = loadOf(window, {});
    figures[restingCpu] = resting.own;
    figures[restingServer] = resting.server;
    const VstInt32 slider = sliderOf(effect);
    double changes = 0;
    const Job automate{automationInterval, [&] {
                           constexpr double turn = 30; // changes
                           effect.setParameter(
                               slider, static_cast<float>(0.5 + 0.4 * std::sin(++changes / turn)));
                       }};
    const Load automated = loadOf(window, {automate});
    figures[automatedCpu] = automated.own;
    figures[automatedServer] = automated.server;
    window.close();
    return figures;
}

// A plug-in with all its rounds; none when it could not be measured.
struct Row {
    std::string plugin;
    std::vector<std::vector<double>> rounds;
};

void printTable(const std::vector<Row>& rows) {
    std::printf("\n%-50s", "beside other windows");
    for (const Row& row : rows)
        std::printf(" %14.14s", std::filesystem::path(row.plugin).stem().c_str());
    std::printf("\n");
    for (std::size_t figure = 0; figure < figureCount; ++figure) {
        std::printf("  %-48s", figureNames.at(figure));
        for (const Row& row : rows) {
            std::vector<double> values;
            for (const auto& round : row.rounds)
                values.push_back(round.at(figure));
            if (values.empty())
                std::printf(" %14s", "-");
            else
                std::printf(" %14.1f", median(values));
        }
        std::printf("\n");
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: mirelon-windowpeersbench PLUGIN...\n");
        return 2;
    }
    std::vector<Row> rows;
    for (int i = 1; i < argc; ++i)
        rows.push_back({argv[i], {}});
    for (int round = 0; round < rounds; ++round)
        for (Row& row : rows) {
            try {
                row.rounds.push_back(
                    measuredInAProcess(figureCount, [&] { return measure(row.plugin); }));
            } catch (const std::exception& error) {
                std::fprintf(stderr, "mirelon-windowpeersbench: %s: %s\n", row.plugin.c_str(),
                             error.what());
            }
        }
    printTable(rows);
    return rows.front().rounds.empty() ? 1 : 0;
}
