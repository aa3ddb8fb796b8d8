// What the plug-in asks of its CLAP host. Hosts may lack any of it.
#pragma once

#include <clap/ext/gui.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/host.h>
#include <optional>

namespace mirelon::clap {

// What the host has no function for is not done.
class HostLink {
  public:
    // `host` serves as long as this. Nothing is asked of it before the extensions
    // have been looked up.
    explicit HostLink(const clap_host* host) noexcept
        : host(host) {}
    void findExtensions() noexcept;

    // Any thread.
    void requestCallback() const noexcept;
    // Any thread but the audio thread.
    void requestFlush() const noexcept;

    // The main thread.
    void rescanValues() const noexcept;
    void markDirty() const noexcept;
    // Nothing when there is to be no timer.
    std::optional<clap_id> startTimer(std::uint32_t milliseconds) const noexcept;
    void stopTimer(clap_id timer) const noexcept;
    bool canResizeWindow() const noexcept;
    // In pixels; false when the host does not give it.
    bool resizeWindow(std::uint32_t width, std::uint32_t height) const noexcept;

  private:
    template <typename Extension>
    const Extension* extension(const char* id) const noexcept;

    const clap_host* host;
    bool started = false;
    const clap_host_params* params = nullptr;
    const clap_host_state* state = nullptr;
    const clap_host_timer_support* timers = nullptr;
    const clap_host_gui* gui = nullptr;
};

} // namespace mirelon::clap
