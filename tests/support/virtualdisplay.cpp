#include "tests/support/virtualdisplay.h"

#include <X11/Xlib.h>

#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <unistd.h>

namespace mirelon::test {

VirtualDisplay& VirtualDisplay::start() {
    static VirtualDisplay display;
    return display;
}

namespace {

// Servers that start at the same moment may choose the same number, so the test
// programs of this user start theirs one after another.
class StartingTurn {
  public:
    StartingTurn()
        : file(open(("/tmp/.mirelon-test-display-" + std::to_string(getuid())).c_str(),
                    O_CREAT | O_RDWR | O_CLOEXEC, 0600)) {
        if (file >= 0)
            flock(file, LOCK_EX);
    }
    ~StartingTurn() {
        if (file >= 0)
            close(file);
    }
    StartingTurn(const StartingTurn&) = delete;
    StartingTurn& operator=(const StartingTurn&) = delete;

  private:
    int file;
};

bool answers(const std::string& display) {
    Display* connection = XOpenDisplay(display.c_str());
    if (connection == nullptr)
        return false;
    XCloseDisplay(connection);
    return true;
}

} // namespace

VirtualDisplay::VirtualDisplay() {
    const StartingTurn turn;
    constexpr int attempts = 10;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        server = std::make_unique<XServer>("1280x1200x24");
        if (!name().empty() && answers(name())) {
            setenv("DISPLAY", name().c_str(), 1);
            return;
        }
    }
    throw std::runtime_error("Xvfb did not start");
}

} // namespace mirelon::test
