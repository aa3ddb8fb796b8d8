// How a command that has said all there is to say ends the program.
#pragma once

namespace mirelon::tools {

// Thrown by a command that ran as asked and has a verdict: 0 or 1, as 2 stands
// for what could not be done.
struct ExitStatus {
    int value;
};

} // namespace mirelon::tools
