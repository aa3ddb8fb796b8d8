#include "tools/progressbar.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace mirelon::tools {

namespace {

constexpr std::chrono::milliseconds interval{100};
constexpr std::int64_t width = 40;

} // namespace

ProgressBar::ProgressBar(std::int64_t total_, bool wanted)
    : total(std::max<std::int64_t>(total_, 1))
    , onTerminal(wanted && isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar() {
    if (drawn)
        std::fputs("\r\033[K", stderr);
}

void ProgressBar::show(std::int64_t done) {
    if (!onTerminal || Clock::now() < nextDraw)
        return;
    nextDraw = Clock::now() + interval;
    drawn = true;
    const double part = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const auto filled = static_cast<std::size_t>(part * width);
    const std::string bar = std::string(filled, '#') + std::string(width - filled, '.');
    std::fprintf(stderr, "\r[%s] %3d %%", bar.c_str(), static_cast<int>(part * 100.0));
    std::fflush(stderr);
}

} // namespace mirelon::tools
