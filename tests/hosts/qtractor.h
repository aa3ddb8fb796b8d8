// Qtractor without a person in front of it, and its session files.
#pragma once

#include "tests/hosts/hosthome.h"
#include "tests/hosts/program.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// Leaves the running test, saying why.
#define SKIP_WITHOUT_QTRACTOR()                                                                    \
    if (!mirelon::test::qtractor::isInstalled())                                                   \
    GTEST_SKIP() << "Qtractor is not installed (scripts/setup hosts)"

namespace mirelon::test::qtractor {

bool isInstalled();

// The program with a window, to be started with a session's file.
std::string program();

// What lets it start its engine where the kernel has no MIDI sequencer.
Environment variables();

// What its scanner says of the plug-in of this home, whose format it is told.
Outcome scan(const HostHome& home, const std::string& format = "VST2");

// A plug-in as a session names it.
struct PluginEntry {
    std::string type;
    std::string file; // or the URI
    std::string label;
    std::string uniqueId;
};
PluginEntry vst(const HostHome& home);
PluginEntry clap(const HostHome& home);
PluginEntry lv2(const std::string& uri);

// A session with this plug-in on the master bus's output.
void writeSession(const PluginEntry& plugin, const std::filesystem::path& file);

// One parameter's automation, as the session names it; it plays, and what the
// user does meanwhile is recorded when `capture` is set.
struct AutomatedParameter {
    unsigned long index;
    std::string name;
    std::filesystem::path curve; // see qtractorcurve.h; beside the session
    bool capture = false;
};

// A session with this plug-in on its only track.
void writeTrackSession(const PluginEntry& plugin, const AutomatedParameter& automated,
                       const std::filesystem::path& file);

// Where a session that Qtractor has saved keeps its only curve.
std::filesystem::path curveFileOf(const std::filesystem::path& session);

// The plug-in's parameters in a session's file, by name.
std::map<std::string, float> parametersIn(const std::filesystem::path& session);

} // namespace mirelon::test::qtractor
