#include "tools/audio/silentdevice.h"

#include <chrono>
#include <vector>

namespace mirelon::tools {

namespace {

constexpr std::size_t blockFrames = 512;

} // namespace

SilentDevice::~SilentDevice() {
    ending = true;
    if (clock.joinable())
        clock.join();
}

void SilentDevice::start(AudioSource& source, int rate) {
    clock = std::thread([this, &source, rate] {
        using Clock = std::chrono::steady_clock;
        const auto blockTime = std::chrono::duration_cast<Clock::duration>(
            std::chrono::duration<double>(static_cast<double>(blockFrames) / rate));
        std::vector<float> unheard(2 * blockFrames);
        for (auto next = Clock::now(); !ending; next += blockTime) {
            source.fill(unheard, {});
            std::this_thread::sleep_until(next + blockTime);
        }
    });
}

} // namespace mirelon::tools
