#include "tests/support/virtualdisplay.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mirelon::test {

VirtualDisplay& VirtualDisplay::start() {
    static VirtualDisplay display;
    return display;
}

VirtualDisplay::VirtualDisplay() {
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
    if (number.empty())
        throw std::runtime_error("Xvfb did not start");
    display = ":" + number;
    setenv("DISPLAY", display.c_str(), 1);
}

VirtualDisplay::~VirtualDisplay() {
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
}

} // namespace mirelon::test
