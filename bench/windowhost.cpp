#include "bench/windowhost.h"

#include "hosting/childprocess.h"
#include "hosting/pipe.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <glib.h>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace mirelon::bench {

using std::chrono::milliseconds;

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

double seconds(Clock::duration time) {
    return std::chrono::duration<double>(time).count();
}

double ownSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto of = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return of(usage.ru_utime) + of(usage.ru_stime);
}

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

std::vector<double> measuredInAProcess(std::size_t count,
                                       const std::function<std::vector<double>()>& measure) {
    hosting::Pipe pipe;
    hosting::ChildProcess process([&] {
        try {
            const std::vector<double> figures = measure();
            const std::size_t size = figures.size() * sizeof(double);
            return write(pipe.writer(), figures.data(), size) == static_cast<ssize_t>(size) ? 0 : 1;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            return 1;
        }
    });
    pipe.closeWriter();
    std::vector<double> figures(count);
    const std::size_t size = count * sizeof(double);
    if (read(pipe.reader(), figures.data(), size) != static_cast<ssize_t>(size))
        throw std::runtime_error("it could not be measured");
    return figures;
}

} // namespace mirelon::bench
