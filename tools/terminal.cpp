#include "tools/terminal.h"

#include <cstdio>
#include <unistd.h>

namespace mirelon::tools {

namespace {

// Who else reads from a terminal or changes it, is stopped for it.
bool inForeground() {
    return tcgetpgrp(STDIN_FILENO) == getpgrp();
}

} // namespace

Terminal::Terminal()
    : shows(isatty(STDOUT_FILENO) == 1) {
    if (!inForeground() || tcgetattr(STDIN_FILENO, &before) != 0)
        return;
    termios single = before;
    single.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    single.c_cc[VMIN] = 0;
    single.c_cc[VTIME] = 0;
    keys = tcsetattr(STDIN_FILENO, TCSANOW, &single) == 0;
}

Terminal::~Terminal() {
    if (!shown.empty())
        std::printf("\n");
    if (keys && inForeground())
        tcsetattr(STDIN_FILENO, TCSANOW, &before);
}

std::string Terminal::typed() {
    if (!keys || !inForeground())
        return {};
    char buffer[64];
    const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
    return {buffer, count > 0 ? static_cast<std::size_t>(count) : 0};
}

void Terminal::showStatus(const std::string& text) {
    if (!shows || text == shown)
        return;
    constexpr const char* eraseLine = "\r\x1b[K";
    std::printf("%s%s", eraseLine, text.c_str());
    std::fflush(stdout);
    shown = text;
}

} // namespace mirelon::tools
