// What mirelon-host --help prints, of the program and of each of its commands.
#include "tests/tools/hostprogram.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace mirelon::test {
namespace {

constexpr std::size_t textColumn = 30;

std::vector<std::string> helpOf(std::vector<std::string> command) {
    command.emplace_back("--help");
    const ProgramResult result = runHost(command);
    EXPECT_EQ(result.status, 0) << result.errors;
    std::vector<std::string> lines;
    std::istringstream stream(result.output);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// Where a list names something: indented by two.
bool isEntry(const std::string& line) {
    return line.size() > 2 && line.starts_with("  ") && line[2] != ' ';
}

bool hasTextAt(const std::string& line) {
    return line.size() > textColumn && line[textColumn - 1] == ' ' && line[textColumn] != ' ';
}

// The text stands beside the name, or below one that is too long for that.
void expectEntriesExplained(const std::vector<std::string>& lines) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool below = i + 1 < lines.size() &&
                           lines[i + 1].starts_with(std::string(textColumn, ' ')) &&
                           hasTextAt(lines[i + 1]);
        EXPECT_TRUE(!isEntry(lines[i]) || hasTextAt(lines[i]) || below) << lines[i];
    }
}

// Those that take nothing, --input with one command of two.
constexpr std::array<std::string_view, 18> flags{
    "--double",          "--dither",  "--help",  "--in-process",
    "--input",           "--json",    "--list",  "--list-devices",
    "--loudness",        "--no-clip", "--once",  "--overwrite",
    "--parameter-names", "--play",    "--quiet", "--strict",
    "--verbose",         "--version"};

bool isCapital(char letter) {
    return letter >= 'A' && letter <= 'Z';
}

// Every other option is followed by what it takes, in capitals.
void expectKindsNamed(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        const auto name = line.find("--");
        if (!isEntry(line) || name == std::string::npos || name > std::string_view("  -h,").size())
            continue;
        const auto end = std::min(line.find_first_of(" :=", name), line.size());
        const bool mayTakeNothing = std::ranges::count(flags, line.substr(name, end - name)) != 0;
        const bool takesWhatItNames = end + 2 < line.size() && line[end] == ' ' &&
                                      isCapital(line[end + 1]) && isCapital(line[end + 2]);
        EXPECT_TRUE(mayTakeNothing || takesWhatItNames) << line;
    }
}

std::vector<std::string> commandsIn(const std::vector<std::string>& lines) {
    std::vector<std::string> names;
    bool listed = false;
    for (const std::string& line : lines) {
        listed = line == "Subcommands:" || (listed && isEntry(line));
        if (listed && isEntry(line))
            names.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
    return names;
}

// Answers how many commands there are, with those of commands.
std::size_t expectHelp(const std::vector<std::string>& command) {
    const std::vector<std::string> lines = helpOf(command);
    const std::string name = command.empty() ? "the program" : command.back();
    SCOPED_TRACE(name);
    if (lines.empty() || lines.front().empty() || lines.front().starts_with("Usage"))
        ADD_FAILURE() << "does not say what it is for";
    expectEntriesExplained(lines);
    expectKindsNamed(lines);
    std::size_t count = 0;
    for (const std::string& each : commandsIn(lines)) {
        std::vector<std::string> inner = command;
        inner.push_back(each);
        count += 1 + expectHelp(inner);
    }
    return count;
}

TEST(Help, SaysOfEveryCommandAndOptionWhatItIsForAndTakes) {
    EXPECT_GE(expectHelp({}), 20U);
}

} // namespace
} // namespace mirelon::test
