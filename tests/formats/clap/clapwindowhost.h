// A window of the CLAP plug-in in a host's window, and a user in front of it; the
// plug-in may be playing behind it.
#pragma once

#include "tests/formats/clap/clapfile.h"
#include "tests/support/xwindow.h"

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace mirelon::test {

class ClapWindowHost {
  public:
    explicit ClapWindowHost(hosting::ClapExtensions offered = hosting::ClapExtensions::all);
    ~ClapWindowHost();
    ClapWindowHost(const ClapWindowHost&) = delete;
    ClapWindowHost& operator=(const ClapWindowHost&) = delete;

    // What a host asks for one after the other; false at the first refusal.
    bool open(double scale = 1.0);
    void close();

    const clap_plugin* plugin() const { return &plugIn.instance.plugin(); }
    const clap_plugin_gui& gui() const { return *plugIn.instance.window(); }

    // The host's loop; with a playing plug-in also blocks of silence, whose events
    // are noted. `runUntil` answers whether it came true in time.
    void play();
    void run(std::chrono::milliseconds time = std::chrono::milliseconds(60));
    bool runUntil(const std::function<bool()>& condition);

    void moveTo(int x, int y);
    void click(int x, int y);
    void drag(int fromX, int toX, int y);
    Pixels pixels();

    // What the plug-in has told while it played, in its order: altogether, and of
    // one parameter.
    std::vector<hosting::ClapTold> told;
    std::vector<hosting::ClapTold> toldOf(int parameter) const;

    EmptyPreferences preferences;
    std::unique_ptr<XWindow> parent;
    ClapPlugIn plugIn;

  private:
    void turn();

    bool playing = false;
};

} // namespace mirelon::test
