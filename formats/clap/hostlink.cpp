#include "formats/clap/hostlink.h"

namespace mirelon::clap {

template <typename Extension>
const Extension* HostLink::extension(const char* id) const noexcept {
    return static_cast<const Extension*>(host->get_extension(host, id));
}

void HostLink::findExtensions() noexcept {
    started = true;
    if (host == nullptr || host->get_extension == nullptr)
        return;
    params = extension<clap_host_params>(CLAP_EXT_PARAMS);
    state = extension<clap_host_state>(CLAP_EXT_STATE);
    timers = extension<clap_host_timer_support>(CLAP_EXT_TIMER_SUPPORT);
    gui = extension<clap_host_gui>(CLAP_EXT_GUI);
}

void HostLink::requestCallback() const noexcept {
    if (started && host != nullptr && host->request_callback != nullptr)
        host->request_callback(host);
}

void HostLink::requestFlush() const noexcept {
    if (params != nullptr && params->request_flush != nullptr)
        params->request_flush(host);
}

void HostLink::rescanValues() const noexcept {
    if (params != nullptr && params->rescan != nullptr)
        params->rescan(host, CLAP_PARAM_RESCAN_VALUES | CLAP_PARAM_RESCAN_TEXT);
}

void HostLink::markDirty() const noexcept {
    if (state != nullptr && state->mark_dirty != nullptr)
        state->mark_dirty(host);
}

std::optional<clap_id> HostLink::startTimer(std::uint32_t milliseconds) const noexcept {
    clap_id timer = CLAP_INVALID_ID;
    if (timers == nullptr || timers->register_timer == nullptr ||
        timers->unregister_timer == nullptr || !timers->register_timer(host, milliseconds, &timer))
        return std::nullopt;
    return timer;
}

void HostLink::stopTimer(clap_id timer) const noexcept {
    timers->unregister_timer(host, timer);
}

bool HostLink::canResizeWindow() const noexcept {
    return gui != nullptr && gui->request_resize != nullptr;
}

bool HostLink::resizeWindow(std::uint32_t width, std::uint32_t height) const noexcept {
    return canResizeWindow() && gui->request_resize(host, width, height);
}

} // namespace mirelon::clap
