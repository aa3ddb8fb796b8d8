// What is asked of hosts that have everything, something, or nothing.
#include "formats/clap/hostlink.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace mirelon::clap {
namespace {

// Which functions a host has.
enum class Has { everything, hollowExtensions, noExtension, noFunction };

// Notes what it is asked for.
class NotingHost {
  public:
    explicit NotingHost(Has has) {
        record.clap_version = CLAP_VERSION;
        record.host_data = this;
        if (has == Has::noFunction)
            return;
        record.request_callback = [](const clap_host* host) { of(host).asked += "callback "; };
        if (has == Has::everything)
            record.get_extension = [](const clap_host*, const char* id) { return full(id); };
        else if (has == Has::hollowExtensions)
            record.get_extension = [](const clap_host*, const char* id) { return hollow(id); };
        else
            record.get_extension = [](const clap_host*, const char*) -> const void* {
                return nullptr;
            };
    }

    clap_host record{};
    std::string asked;
    bool givesTimers = true;

  private:
    static NotingHost& of(const clap_host* host) {
        return *static_cast<NotingHost*>(host->host_data);
    }
    static const void* one(std::string_view id, const clap_host_params& params,
                           const clap_host_state& state, const clap_host_timer_support& timers,
                           const clap_host_gui& gui) {
        if (id == CLAP_EXT_PARAMS)
            return &params;
        if (id == CLAP_EXT_STATE)
            return &state;
        if (id == CLAP_EXT_TIMER_SUPPORT)
            return &timers;
        return id == CLAP_EXT_GUI ? &gui : nullptr;
    }
    static const void* hollow(std::string_view id) {
        static constexpr clap_host_params params{};
        static constexpr clap_host_state state{};
        static constexpr clap_host_timer_support timers{};
        static constexpr clap_host_gui gui{};
        return one(id, params, state, timers, gui);
    }
    static const void* full(std::string_view id) {
        static constexpr clap_host_params params{
            [](const clap_host* host, clap_param_rescan_flags what) {
                of(host).asked += "rescan" + std::to_string(what) + ' ';
            },
            nullptr, [](const clap_host* host) { of(host).asked += "flush "; }};
        static constexpr clap_host_state state{
            [](const clap_host* host) { of(host).asked += "dirty "; }};
        static constexpr clap_host_timer_support timers{
            [](const clap_host* host, std::uint32_t milliseconds, clap_id* timer) {
                of(host).asked += "timer" + std::to_string(milliseconds) + ' ';
                *timer = 7;
                return of(host).givesTimers;
            },
            [](const clap_host* host, clap_id timer) {
                of(host).asked += "untimer" + std::to_string(timer) + ' ';
                return true;
            }};
        static constexpr clap_host_gui gui{
            nullptr,
            [](const clap_host* host, std::uint32_t width, std::uint32_t height) {
                of(host).asked +=
                    "size" + std::to_string(width) + 'x' + std::to_string(height) + ' ';
                return true;
            },
            nullptr, nullptr, nullptr};
        return one(id, params, state, timers, gui);
    }
};

void askForEverything(const HostLink& link) {
    link.requestCallback();
    link.requestFlush();
    link.rescanValues();
    link.markDirty();
}

TEST(ClapHostLink, AsksAHostThatHasEverything) {
    NotingHost host(Has::everything);
    HostLink link(&host.record);
    link.findExtensions();
    askForEverything(link);
    EXPECT_EQ(host.asked, "callback flush rescan3 dirty ");
    host.asked.clear();
    const auto timer = link.startTimer(16);
    EXPECT_EQ(timer, clap_id{7});
    link.stopTimer(timer.value_or(0));
    EXPECT_TRUE(link.canResizeWindow());
    EXPECT_TRUE(link.resizeWindow(486, 522));
    EXPECT_EQ(host.asked, "timer16 untimer7 size486x522 ");
}

TEST(ClapHostLink, HasNoTimerWhereTheHostGivesNone) {
    NotingHost host(Has::everything);
    host.givesTimers = false;
    HostLink link(&host.record);
    link.findExtensions();
    EXPECT_FALSE(link.startTimer(16));
}

TEST(ClapHostLink, AsksNothingBeforeTheExtensionsAreLookedUp) {
    NotingHost host(Has::everything);
    const HostLink link(&host.record);
    askForEverything(link);
    EXPECT_FALSE(link.startTimer(16));
    EXPECT_FALSE(link.resizeWindow(486, 522));
    EXPECT_EQ(host.asked, "");
}

TEST(ClapHostLink, LeavesUndoneWhatTheHostHasNoFunctionFor) {
    for (const Has has : {Has::hollowExtensions, Has::noExtension, Has::noFunction}) {
        NotingHost host(has);
        HostLink link(&host.record);
        link.findExtensions();
        askForEverything(link);
        EXPECT_FALSE(link.startTimer(16));
        EXPECT_FALSE(link.canResizeWindow());
        EXPECT_FALSE(link.resizeWindow(486, 522));
        EXPECT_EQ(host.asked, has == Has::noFunction ? "" : "callback ");
    }
}

TEST(ClapHostLink, WithoutAHostDoesNothing) {
    HostLink link(nullptr);
    link.findExtensions();
    askForEverything(link);
    EXPECT_FALSE(link.startTimer(16));
    EXPECT_FALSE(link.resizeWindow(486, 522));
}

} // namespace
} // namespace mirelon::clap
