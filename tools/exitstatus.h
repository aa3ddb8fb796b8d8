// How a command that has said all there is to say ends the program.
#pragma once

namespace mirelon::tools {

// Thrown by a command that ran as asked and has a verdict.
struct ExitStatus {
    // 2 stands for what could not be done.
    static constexpr int different = 1;  // compare: the files differ; check: a fault was found
    static constexpr int failed = 2;     // some of several files
    static constexpr int incomplete = 3; // done with what there was of a truncated input

    int value;
};

} // namespace mirelon::tools
