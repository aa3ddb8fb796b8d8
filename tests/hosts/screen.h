// The screen of a test, with other programs' windows on it, and a user's hands.
#pragma once

#include "tests/editor/positions.h"
#include "tests/hosts/program.h"
#include "tests/support/xwindow.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _XDisplay;

namespace mirelon::test {

class Screen {
  public:
    using WindowId = unsigned long;

    // On the test display, with a window manager that runs in this environment.
    Screen(const Environment& environment, const std::filesystem::path& log);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    static std::string display();
    static bool hasWindowManager();

    // A window on show whose title has this in it.
    std::optional<WindowId> windowTitled(const std::string& part) const;
    // A window of exactly this size somewhere inside another.
    std::optional<WindowId> inside(WindowId window, const std::string& size) const;
    Pixels pixels(WindowId window) const;

    void pointAt(WindowId window, Position at);
    void press(unsigned button = 1);
    void release(unsigned button = 1);
    void click(WindowId window, Position at, unsigned button = 1);
    // Where the pointer stands.
    void doubleClick();
    void key(unsigned long keysym, unsigned long modifier = 0);
    void type(std::string_view text); // lower-case letters, digits and blanks
    // As a click into its title bar and on the button there would do.
    void activate(WindowId window);
    void close(WindowId window);

  private:
    bool isOnShow(WindowId window) const;
    void tellWindowManager(WindowId window, const char* message, long first) const;

    _XDisplay* connection;
    std::unique_ptr<Program> windowManager;
};

// What `look` shows once that is as wanted and has stayed the same for a fifth of a
// second, as a menu does that has faded in and takes clicks; nothing when it does not
// come to that in ten seconds.
std::optional<Pixels> atRest(const std::function<Pixels()>& look,
                             const std::function<bool(const Pixels&)>& wanted);

} // namespace mirelon::test
