// How far a long run has come.
#pragma once

#include <chrono>
#include <cstdint>

namespace mirelon::tools {

// One line on standard error, redrawn a few times a second and wiped off at the
// end; nothing at all when that is no terminal.
class ProgressBar {
  public:
    // `wanted` false: nothing at all, wherever it goes.
    explicit ProgressBar(std::int64_t total, bool wanted = true);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void show(std::int64_t done);

  private:
    using Clock = std::chrono::steady_clock;

    std::int64_t total;
    bool onTerminal;
    bool drawn = false;
    Clock::time_point nextDraw = Clock::now();
};

} // namespace mirelon::tools
