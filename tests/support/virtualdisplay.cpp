#include "tests/support/virtualdisplay.h"

#include <X11/Xlib.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/wait.h>
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
    for (int attempt = 0; attempt < attempts && display.empty(); ++attempt)
        launch();
    if (display.empty())
        throw std::runtime_error("Xvfb did not start");
    setenv("DISPLAY", display.c_str(), 1);
}

void VirtualDisplay::launch() {
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe for the X server");
    const std::string writeEnd = std::to_string(ends[1]);
    server = fork();
    if (server == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        close(ends[0]);
        // It complains of every display number that is taken.
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        execlp("Xvfb", "Xvfb", "-displayfd", writeEnd.c_str(), "-screen", "0", "1280x1200x24",
               "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(ends[1]);
    std::string number;
    for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';)
        number += c;
    close(ends[0]);
    if (!number.empty() && answers(":" + number)) {
        display = ":" + number;
        return;
    }
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
}

VirtualDisplay::~VirtualDisplay() {
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
}

} // namespace mirelon::test
