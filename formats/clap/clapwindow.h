// The CLAP plug-in's window in a host's.
#pragma once

#include "formats/clap/hostlink.h"
#include "formats/effecthost.h"

#include <clap/ext/gui.h>
#include <cstdint>
#include <optional>

namespace mirelon::clap {

struct WindowSize {
    std::uint32_t width;
    std::uint32_t height;
};

// An X11 window, embedded, of a size that only the scale changes. Open from the
// moment that it has a parent until it is hidden or destroyed; while it is open a
// timer of the host's drives it.
//
// All on the host's main thread. What is asked before create() or after destroy()
// is answered with false.
class ClapWindow {
  public:
    // Both must outlive it.
    ClapWindow(EffectHost& effect, const HostLink& host) noexcept
        : effect(effect)
        , host(host) {}
    ~ClapWindow() { destroy(); }
    ClapWindow(const ClapWindow&) = delete;
    ClapWindow& operator=(const ClapWindow&) = delete;

    static bool isSupported(const char* api, bool floating) noexcept;

    bool create(const char* api, bool floating) noexcept;
    // A name that is being typed counts as typed.
    void destroy() noexcept;

    // What the host's screen asks for; counts from the next opening on.
    bool setScale(double scale) noexcept;
    std::optional<WindowSize> size() noexcept;

    // Opens the window. False without a display or without the parent.
    bool setParent(const clap_window* parent) noexcept;
    bool show() noexcept;
    bool hide() noexcept;

    void onTimer(clap_id timer) noexcept;

  private:
    bool open() noexcept;
    void close() noexcept;

    EffectHost& effect;
    const HostLink& host;
    bool created = false;
    bool opened = false;
    clap_xwnd parent = 0; // 0: none yet
    std::optional<clap_id> timer;
};

} // namespace mirelon::clap
