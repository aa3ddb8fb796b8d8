// What the open editor costs and how fast it is, on an X server without a screen:
//   mirelon-windowbench PLUGIN [OTHER]
// OTHER is an earlier build to compare with. Both are measured in turns, each time
// in a process and on a server of their own. scripts/bench --window runs this.
#include "hosting/childprocess.h"
#include "hosting/hosting.h"
#include "hosting/pipe.h"
#include "tests/support/windowdamage.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <glib.h>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace mirelon;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
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

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

double seconds(Clock::duration time) {
    return std::chrono::duration<double>(time).count();
}

// --- Processor time ---

double ownSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto of = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return of(usage.ru_utime) + of(usage.ru_stime);
}

// The server is this process's only child.
std::string serverStatFile() {
    std::ifstream children("/proc/thread-self/children");
    std::string id;
    children >> id;
    return "/proc/" + id + "/stat";
}

double serverSeconds(const std::string& statFile) {
    std::ifstream stat(statFile);
    std::string line;
    std::getline(stat, line);
    // The program's name, in brackets, may hold blanks.
    std::istringstream rest(line.substr(line.rfind(')') + 1));
    constexpr int skipped = 11; // state to the count of major faults
    std::string word;
    for (int i = 0; i < skipped; ++i)
        rest >> word;
    double user = 0;
    double system = 0;
    if (!(rest >> user >> system))
        throw std::runtime_error("no processor time of the X server");
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

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

// Something that the host does again and again.
struct Job {
    Clock::duration interval;
    std::function<void()> work;
    Clock::time_point due{};
};

// Runs all jobs, and GLib's loop in between, which may sleep until the next.
void runFor(Clock::duration time, std::vector<Job> jobs, bool withGlib) {
    const auto start = Clock::now();
    for (Job& job : jobs)
        job.due = start;
    while (Clock::now() < start + time) {
        auto next = Clock::time_point::max();
        for (Job& job : jobs) {
            if (job.due <= Clock::now()) {
                job.work();
                job.due += job.interval;
            }
            next = std::min(next, job.due);
        }
        if (!withGlib) {
            std::this_thread::sleep_until(next);
            continue;
        }
        const auto left = std::chrono::ceil<milliseconds>(next - Clock::now()).count();
        const auto nothing = [](gpointer) -> gboolean { return G_SOURCE_REMOVE; };
        if (left > 0) {
            g_timeout_add(static_cast<guint>(left), nothing, nullptr);
            g_main_context_iteration(nullptr, TRUE);
        }
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
    }
}

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
    hosting::Pipe pipe;
    hosting::ChildProcess process([&] {
        try {
            const Figures figures = measure(plugin, scale);
            return write(pipe.writer(), figures.data(), sizeof figures) == sizeof figures ? 0 : 1;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "mirelon-windowbench: %s\n", error.what());
            return 1;
        }
    });
    pipe.closeWriter();
    Figures figures{};
    if (read(pipe.reader(), figures.data(), sizeof figures) != sizeof figures)
        throw std::runtime_error(std::string(plugin) + " could not be measured");
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
