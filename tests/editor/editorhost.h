// The built plug-in with its editor in a host's window, and a user who drives
// it with pointer and keys.
#pragma once

#include "hosting/editorwindow.h"
#include "hosting/hosting.h"
#include "tests/support/temporaryfolder.h"
#include "tests/support/windowdamage.h"
#include "tests/support/xwindow.h"

#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

namespace mirelon::hosting {
void PrintTo(Drive drive, std::ostream* out);
}

namespace mirelon::test {

using hosting::Drive;

class EditorHost {
  public:
    explicit EditorHost(Drive drive = Drive::hostIdle);
    ~EditorHost();

    VstIntPtr open();
    void close();
    ERect rect();

    // Lets the host's loop run: for at least so long, and as many turns of it as fit into
    // that on an idle machine, so that a busy one leaves nothing undone.
    void run(std::chrono::milliseconds time = std::chrono::milliseconds(60));
    // Runs until `reached` or for ten seconds; answers whether it was reached.
    bool runUntil(const std::function<bool()>& reached);
    // Runs until the window shows something else than `before` and has come to rest: a
    // menu fades in and out. Rest is counted in turns of the loop, in each of which the
    // window may draw, and not by the clock.
    bool runUntilStill(const Pixels& before);

    // Runs until something has been drawn and the window has come to rest, as above.
    bool runUntilStill(WindowDamage& drawn);

    // Positions are in the editor's own pixels at scale 1.
    void moveTo(double x, double y);
    void press(unsigned button = 1);
    void release(unsigned button = 1);
    void click(double x, double y, unsigned button = 1);
    void doubleClick(double x, double y);
    void drag(double fromX, double fromY, double toX, double toY);
    void wheel(double x, double y, unsigned button);
    void key(unsigned long keysym);
    void type(std::string_view text); // lower-case letters, digits and blanks
    void hold(unsigned long keysym);
    void letGo(unsigned long keysym);

    Pixels pixels();

    // What the plug-in told its host of control `tag`: "b" begin of an edit, "a"
    // automation, "e" end, in order. Forgets nothing.
    std::string touches(VstInt32 tag) const;
    float parameter(VstInt32 index) const { return effect->parameter(index); }

    static const hosting::Module& module();

    TemporaryFolder preferences; // of this instance alone
    hosting::RecordingHost host;
    std::unique_ptr<hosting::Effect> effect;
    std::unique_ptr<XWindow> window;
    double scale = 1.0;

  private:
    void iterate();

    Drive drive;
};

} // namespace mirelon::test
