// What each check tells an effect, call by call: a check that no longer plays every key, or
// no longer asks twice, finds nothing wrong and still passes. Digests are kept of it, for
// one seed; whoever changes a check on purpose copies the file that the test leaves.
#include "tests/support/shellcommand.h"
#include "tests/support/temporaryfolder.h"
#include "tests/support/virtualdisplay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace mirelon::test {
namespace {

const std::string host = MIRELON_HOST_FILE " check ";

// These call as often as their time lets them.
constexpr std::array<std::string_view, 4> byTheClock{
    "editor-while-processing", "realtime-with-editor", "threads-audio-automation-state",
    "threads-with-editor"};

struct Plugin {
    std::string name;
    std::string formats; // as the list of checks calls what it is
    std::string file;    // empty where this build has none
};

void PrintTo(const Plugin& plugin, std::ostream* out) {
    *out << plugin.name;
}

// Of the plug-in's checks.
std::vector<std::string> checksOf(const Plugin& plugin) {
    std::istringstream list(runShell(host + "--list").output);
    std::vector<std::string> found;
    std::string level;
    std::string name;
    for (std::string formats; list >> level >> name && std::getline(list, formats);)
        if ((formats.ends_with("all") || formats.ends_with(plugin.formats)) &&
            std::ranges::find(byTheClock, name) == byTheClock.end())
            found.push_back(name);
    return found;
}

std::vector<std::string> linesOf(const std::string& file) {
    std::ifstream in(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> transcriptsOf(const Plugin& plugin) {
    const TemporaryFolder folder;
    std::vector<std::string> found;
    for (const std::string& name : checksOf(plugin)) {
        const std::string file = (folder.path / name).string();
        const ShellResult ran = runShell("MIRELON_TEST_TRANSCRIPT=" + file + " " + host +
                                         "--seed 1 --only " + name + " " + plugin.file);
        EXPECT_TRUE(ran.status == 0 || ran.output.find("1 skipped") != std::string::npos)
            << ran.output;
        std::ranges::transform(linesOf(file), std::back_inserter(found),
                               [&name](const std::string& line) { return name + ": " + line; });
    }
    return found;
}

class CheckTranscripts : public testing::TestWithParam<Plugin> {
  protected:
    CheckTranscripts() { VirtualDisplay::start(); }
};

TEST_P(CheckTranscripts, AreTheOnesThatAreKept) {
    const Plugin& plugin = GetParam();
    if (plugin.file.empty())
        GTEST_SKIP() << "built without this format";
    const std::vector<std::string> found = transcriptsOf(plugin);
    const std::string copy = MIRELON_FOUND_TRANSCRIPTS "/" + plugin.name + ".txt";
    {
        std::ofstream out(copy);
        std::ranges::copy(found, std::ostream_iterator<std::string>(out, "\n"));
    }
    const std::vector<std::string> kept = linesOf(MIRELON_TRANSCRIPTS "/" + plugin.name + ".txt");
    EXPECT_FALSE(kept.empty());
    const auto [one, other] = std::ranges::mismatch(found, kept);
    EXPECT_TRUE(one == found.end() && other == kept.end())
        << "found: " << (one != found.end() ? *one : "the end")
        << "\nkept:  " << (other != kept.end() ? *other : "the end")
        << "\nall that was found: " << copy;
}

INSTANTIATE_TEST_SUITE_P(Of, CheckTranscripts,
                         testing::Values(Plugin{"effect", "VST 2", MIRELON_TEST_EFFECT},
                                         Plugin{"clap", "CLAP", MIRELON_TEST_CLAP},
                                         Plugin{"lv2", "LV2", MIRELON_TEST_AMPLIFIER}),
                         [](const auto& tested) { return tested.param.name; });

} // namespace
} // namespace mirelon::test
