// Ardour 7 without a person in front of it.
#pragma once

#include "tests/hosts/hosthome.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

// Leaves the running test, saying why.
#define SKIP_WITHOUT_ARDOUR()                                                                      \
    if (!mirelon::test::ardour::isInstalled())                                                     \
    GTEST_SKIP() << "Ardour 7 is not installed (scripts/setup hosts)"

namespace mirelon::test::ardour {

bool isInstalled();

// What Ardour's start script sets, but for the names that makers of MIDI devices gave their
// programs: reading them took most of each start.
Environment variables(const HostHome& home);

// The program with a window, to be started with a session's file.
std::string program();

// Spares this home's user the questions of a first start, and the need of a
// sound card.
void prepareFirstStart(const HostHome& home);

// The scanner's report. Sessions load only what it has found in this home.
Outcome scan(const HostHome& home);

// Runs one of the scripts in tests/hosts/ardour in Ardour's interpreter and
// gives its output; a failure of the running test when it does not end well.
std::string runScript(const HostHome& home, const std::string& script,
                      const std::vector<std::string>& arguments);

// What automate.lua gives the session's plug-in.
struct Automation {
    int parameter = 0;
    std::vector<std::string> points;   // each FRAME=VALUE
    std::optional<unsigned> port = {}; // the parameter's, of an LV2 plug-in
    std::string mode = "Play";         // the host's name for it
};
void automate(const HostHome& home, const std::string& session, const Automation& automation);

// The values in the lines "point <value>" of a script's output.
std::vector<float> pointsIn(const std::string& output);

// The lines "parameter <index> <value>" of a script's output.
std::map<int, float> parametersIn(const std::string& output);

} // namespace mirelon::test::ardour
