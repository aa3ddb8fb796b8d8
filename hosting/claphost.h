// A CLAP host as its plug-in sees it.
#pragma once

#include <atomic>
#include <chrono>
#include <clap/ext/gui.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/host.h>
#include <span>
#include <string_view>
#include <vector>

namespace mirelon::hosting {

// What a host offers beyond what every host must.
enum class ClapExtensions { none, all };

// For one instance, which it must outlive. Counts what is asked of it, without
// allocating.
class ClapHost {
  public:
    explicit ClapHost(ClapExtensions offered = ClapExtensions::all) noexcept
        : offered(offered) {}
    // Offers all but the one of this name.
    explicit ClapHost(std::string_view missing) noexcept
        : missing(missing) {}
    ClapHost(const ClapHost&) = delete;
    ClapHost& operator=(const ClapHost&) = delete;

    const clap_host* record() const noexcept { return &functions; }
    // The names of all that it can offer.
    static std::span<const std::string_view> extensionNames() noexcept;

    // How often the plug-in has asked, so far. Any thread.
    int flushRequests() const noexcept { return flushes; }
    int rescans() const noexcept { return scans; }
    int dirtyMarks() const noexcept { return marks; }
    // Whether a callback on the main thread has been asked for since the last
    // question.
    bool takeCallbackRequest() noexcept { return callback.exchange(false); }

    // The main thread.
    std::size_t timerCount() const noexcept { return timers.size(); }
    // Every timer's interval so far, in milliseconds.
    const std::vector<std::uint32_t>& timerIntervals() const noexcept { return intervals; }
    // The timers that are due; each is due again after its interval.
    std::vector<clap_id> takeDueTimers();

    // Whether the window gets the sizes that the plug-in asks for from now on; at
    // first it does not.
    void giveSizes(bool given) noexcept { sizesGiven = given; }
    struct Size {
        std::uint32_t width;
        std::uint32_t height;
        bool operator==(const Size&) const = default;
    };
    // All that it has asked for so far.
    const std::vector<Size>& sizesAsked() const noexcept { return sizes; }

  private:
    using Clock = std::chrono::steady_clock;
    struct Timer {
        clap_id id;
        std::chrono::milliseconds interval;
        Clock::time_point due;
    };

    static ClapHost& of(const clap_host* host) noexcept {
        return *static_cast<ClapHost*>(host->host_data);
    }
    const void* extension(const char* id) const noexcept;
    bool startTimer(std::uint32_t milliseconds, clap_id* id);
    bool stopTimer(clap_id id);
    bool resize(std::uint32_t width, std::uint32_t height);

    ClapExtensions offered = ClapExtensions::all;
    std::string_view missing; // of these; a constant's, like all names of extensions
    bool sizesGiven = false;
    std::vector<Size> sizes;
    std::atomic<int> flushes{0};
    std::atomic<int> scans{0};
    std::atomic<int> marks{0};
    std::atomic<bool> callback{false};
    std::vector<Timer> timers;
    std::vector<std::uint32_t> intervals;
    clap_id lastTimer = 0;

    clap_host functions{
        CLAP_VERSION,
        this,
        "mirelon-host",
        "",
        "",
        "",
        [](const clap_host* host, const char* id) { return of(host).extension(id); },
        [](const clap_host*) {},
        [](const clap_host*) {},
        [](const clap_host* host) { of(host).callback = true; }};
};

} // namespace mirelon::hosting
