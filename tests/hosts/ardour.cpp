#include "tests/hosts/ardour.h"

#include <gtest/gtest.h>

#include <sstream>

namespace mirelon::test::ardour {
namespace {

namespace fs = std::filesystem;

const std::string programs = "/usr/lib/ardour7";

fs::path dataWithoutMidiNames(const HostHome& home) {
    fs::path folder = home / "ardour";
    if (fs::create_directory(folder))
        for (const auto& entry : fs::directory_iterator("/usr/share/ardour7"))
            if (entry.path().filename() != "patchfiles")
                fs::create_symlink(entry.path(), folder / entry.path().filename());
    return folder;
}

} // namespace

bool isInstalled() {
    return isExecutable(programs + "/luasession") && isExecutable(programs + "/ardour-vst-scanner");
}

Environment variables(const HostHome& home) {
    return {{"LD_LIBRARY_PATH", programs},
            {"ARDOUR_DLL_PATH", programs},
            {"ARDOUR_DATA_PATH", dataWithoutMidiNames(home)},
            {"ARDOUR_CONFIG_PATH", "/etc/ardour7"}};
}

std::string program() {
    for (const auto& entry : fs::directory_iterator(programs))
        if (entry.path().filename().string().starts_with("ardour-7"))
            return entry.path();
    return {};
}

void prepareFirstStart(const HostHome& home) {
    const auto folder = home / "home/.config/ardour7";
    fs::create_directories(folder);
    writeFile(folder / ".a7", "");
    fs::copy_file(fs::path(MIRELON_ARDOUR_SCRIPTS) / "config", folder / "config");
}

Outcome scan(const HostHome& home) {
    return home.run({programs + "/ardour-vst-scanner", "-f", "-v", home.plugin()},
                    std::chrono::seconds(60), variables(home));
}

std::string runScript(const HostHome& home, const std::string& script,
                      const std::vector<std::string>& arguments) {
    std::vector<std::string> command{programs + "/luasession",
                                     std::string(MIRELON_ARDOUR_SCRIPTS) + '/' + script};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const Outcome outcome = home.run(command, std::chrono::seconds(90), variables(home));
    EXPECT_TRUE(outcome.inTime) << script << " did not end";
    EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
    EXPECT_NE(outcome.output.find("\nend of script\n"), std::string::npos) << outcome.output;
    return outcome.output;
}

void automate(const HostHome& home, const std::string& session, const Automation& automation) {
    std::string parameter = std::to_string(automation.parameter);
    if (automation.port)
        parameter.append(":").append(std::to_string(*automation.port));
    std::vector<std::string> arguments{session, parameter, automation.mode};
    arguments.insert(arguments.end(), automation.points.begin(), automation.points.end());
    runScript(home, "automate.lua", arguments);
}

std::vector<float> pointsIn(const std::string& output) {
    std::vector<float> points;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        float value = 0.0F;
        if (words >> word >> value && word == "point")
            points.push_back(value);
    }
    return points;
}

std::map<int, float> parametersIn(const std::string& output) {
    std::map<int, float> parameters;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        int index = 0;
        float value = 0.0F;
        if (words >> word >> index >> value && word == "parameter")
            parameters[index] = value;
    }
    return parameters;
}

} // namespace mirelon::test::ardour
