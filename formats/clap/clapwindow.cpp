#include "formats/clap/clapwindow.h"

#include "editor/adeditor.h"

#include <cmath>
#include <cstring>

namespace mirelon::clap {

namespace {

// As smooth as most screens show it.
constexpr std::uint32_t timerInterval = 16;

ADEditor& editorOf(const EffectHost& host) {
    return *static_cast<ADEditor*>(host.effect().getEditor());
}

bool isX11(const char* api) noexcept {
    return api != nullptr && std::strcmp(api, CLAP_WINDOW_API_X11) == 0;
}

} // namespace

bool ClapWindow::isSupported(const char* api, bool floating) noexcept {
    return isX11(api) && !floating;
}

bool ClapWindow::create(const char* api, bool floating) noexcept {
    if (created || !isSupported(api, floating))
        return false;
    created = true;
    return true;
}

void ClapWindow::destroy() noexcept {
    close();
    created = false;
    parent = 0;
}

bool ClapWindow::setScale(double scale) noexcept {
    if (!created || !std::isfinite(scale) || scale <= 0.0)
        return false;
    editorOf(effect).setHostScale(scale);
    return true;
}

std::optional<WindowSize> ClapWindow::size() noexcept {
    ERect* rect = nullptr;
    if (!created || effect.dispatch(effEditGetRect, 0, 0, &rect) == 0 || rect == nullptr)
        return std::nullopt;
    return WindowSize{static_cast<std::uint32_t>(rect->right - rect->left),
                      static_cast<std::uint32_t>(rect->bottom - rect->top)};
}

bool ClapWindow::setParent(const clap_window* window) noexcept {
    if (!created || window == nullptr || !isX11(window->api) || window->x11 == 0)
        return false;
    parent = window->x11;
    return open();
}

bool ClapWindow::show() noexcept {
    return opened || (parent != 0 && open());
}

bool ClapWindow::hide() noexcept {
    close();
    return created;
}

bool ClapWindow::open() noexcept {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): so the effect takes a window
    auto* const place = reinterpret_cast<void*>(parent);
    close();
    opened = effect.dispatch(effEditOpen, 0, 0, place) != 0;
    if (opened)
        timer = host.startTimer(timerInterval);
    return opened;
}

void ClapWindow::close() noexcept {
    if (timer)
        host.stopTimer(*timer);
    timer.reset();
    if (opened)
        effect.dispatch(effEditClose);
    opened = false;
}

void ClapWindow::onTimer(clap_id id) noexcept {
    if (timer && *timer == id)
        effect.dispatch(effEditIdle);
}

} // namespace mirelon::clap
