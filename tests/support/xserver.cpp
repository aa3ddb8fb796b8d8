#include "tests/support/xserver.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace mirelon::test {

using namespace std::chrono_literals;

XServer::XServer(const std::string& screen, Left left)
    : server([this, &screen, left] {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        // It complains of every display number that is taken.
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        const std::string writeEnd = std::to_string(dup(numbers.writer()));
        // Nobody asks for GLX, and its software renderer took most of the server's start.
        execlp("Xvfb", "Xvfb", "-displayfd", writeEnd.c_str(), "-screen", "0", screen.c_str(),
               "-nolisten", "tcp", "-extension", "GLX",
               left == Left::ends ? "-terminate" : "-noreset", static_cast<char*>(nullptr));
        return 127;
    }) {
    numbers.closeWriter();
    std::string number;
    for (char c = 0; read(numbers.reader(), &c, 1) == 1 && c != '\n';)
        number += c;
    if (!number.empty())
        name = ':' + number;
}

// A test is not to wait for ever for a server that does not end.
XServer::~XServer() {
    server.kill(SIGTERM);
    server.waitFor(10s);
}

bool XServer::ends() {
    return server.waitFor(10s);
}

void XServer::kill() {
    server.kill(SIGKILL);
    server.wait();
}

} // namespace mirelon::test
