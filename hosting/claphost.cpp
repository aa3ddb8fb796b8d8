#include "hosting/claphost.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace mirelon::hosting {

std::span<const std::string_view> ClapHost::extensionNames() noexcept {
    static constexpr std::array<std::string_view, 4> names{CLAP_EXT_PARAMS, CLAP_EXT_STATE,
                                                           CLAP_EXT_TIMER_SUPPORT, CLAP_EXT_GUI};
    return names;
}

const void* ClapHost::extension(const char* id) const noexcept {
    static constexpr clap_host_params params{
        [](const clap_host* host, clap_param_rescan_flags) { ++of(host).scans; },
        [](const clap_host*, clap_id, clap_param_clear_flags) {},
        [](const clap_host* host) { ++of(host).flushes; }};
    static constexpr clap_host_state state{[](const clap_host* host) { ++of(host).marks; }};
    static constexpr clap_host_timer_support timerSupport{
        [](const clap_host* host, std::uint32_t milliseconds, clap_id* id) {
            return of(host).startTimer(milliseconds, id);
        },
        [](const clap_host* host, clap_id id) { return of(host).stopTimer(id); }};
    static constexpr clap_host_gui gui{
        [](const clap_host*) {},
        [](const clap_host* host, std::uint32_t width, std::uint32_t height) {
            return of(host).resize(width, height);
        },
        [](const clap_host*) { return false; }, [](const clap_host*) { return false; },
        [](const clap_host*, bool) {}};
    if (offered == ClapExtensions::none || id == missing)
        return nullptr;
    if (std::strcmp(id, CLAP_EXT_PARAMS) == 0)
        return &params;
    if (std::strcmp(id, CLAP_EXT_STATE) == 0)
        return &state;
    if (std::strcmp(id, CLAP_EXT_TIMER_SUPPORT) == 0)
        return &timerSupport;
    if (std::strcmp(id, CLAP_EXT_GUI) == 0)
        return &gui;
    return nullptr;
}

bool ClapHost::resize(std::uint32_t width, std::uint32_t height) {
    sizes.push_back({width, height});
    return sizesGiven;
}

bool ClapHost::startTimer(std::uint32_t milliseconds, clap_id* id) {
    const std::chrono::milliseconds interval(milliseconds);
    timers.push_back({++lastTimer, interval, Clock::now() + interval});
    intervals.push_back(milliseconds);
    *id = lastTimer;
    return true;
}

bool ClapHost::stopTimer(clap_id id) {
    return std::erase_if(timers, [id](const Timer& timer) { return timer.id == id; }) > 0;
}

std::vector<clap_id> ClapHost::takeDueTimers() {
    const auto now = Clock::now();
    std::vector<clap_id> due;
    for (Timer& timer : timers) {
        if (timer.due > now)
            continue;
        due.push_back(timer.id);
        timer.due = now + timer.interval;
    }
    return due;
}

} // namespace mirelon::hosting
