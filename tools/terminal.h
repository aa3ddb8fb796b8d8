// The terminal that a program runs in: single keys, and a line that changes.
#pragma once

#include <string>
#include <termios.h>

namespace mirelon::tools {

// On standard input and output, each for itself if it is a terminal; what is none is
// left alone. While it lives, keys come one by one and are not shown; Control-C stays
// what it is. One object.
class Terminal {
  public:
    Terminal();
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    bool takesKeys() const { return keys; }

    // What has been typed by now, without waiting. Empty in the background as well.
    std::string typed();

    // Shows the text in the last line, in the place of the one before.
    void showStatus(const std::string& text);

  private:
    bool keys = false;
    bool shows = false;
    termios before{};
    std::string shown;
};

} // namespace mirelon::tools
