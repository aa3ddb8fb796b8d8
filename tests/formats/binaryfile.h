// What a plug-in's file says of itself to the loader.
#pragma once

#include "tests/formats/shellcommand.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace mirelon::test {

inline std::vector<std::string> linesOf(const std::string& command) {
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    std::vector<std::string> lines;
    std::istringstream text(outcome.output);
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

// Names that others can find in it.
inline std::vector<std::string> exportedBy(const std::string& file) {
    return linesOf("nm -D --defined-only " + file + " | awk '{print $3}'");
}

// Libraries that it is loaded with.
inline std::vector<std::string> neededBy(const std::string& file) {
    return linesOf("readelf -d " + file + " | sed -n 's/.*NEEDED.*\\[\\(.*\\)\\]/\\1/p'");
}

// Whether its code stays mapped when the last user unloads it.
inline bool staysInMemory(const std::string& file) {
    return run("readelf -d " + file).output.find("NODELETE") != std::string::npos;
}

} // namespace mirelon::test
