// mirelon-host: a small host for VST 2.4, LV2 and CLAP effects.
#include "hosting/hostingerror.h"
#include "tools/commanderror.h"
#include "tools/commands.h"
#include "tools/exitstatus.h"
#include "tools/nearestname.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int exitDone = 0;
constexpr int exitRefused = 2;

int refuse(std::string why) {
    for (char& c : why) {
        if (c == '\n')
            c = ' ';
    }
    std::cerr << "mirelon-host: " << why << '\n';
    return exitRefused;
}

// The parser would only say that there is none.
void expectCommand(const std::string& name) {
    std::vector<std::string> names;
    for (const mirelon::tools::Command& command : mirelon::tools::commands())
        names.emplace_back(command.name);
    if (std::find(names.begin(), names.end(), name) == names.end())
        throw mirelon::tools::CommandError(mirelon::tools::unknownName("command", name, names));
}

int run(int argc, char** argv) {
    CLI::App parser{"A small host for VST 2.4, LV2 and CLAP effects", "mirelon-host"};
    parser.require_subcommand(1);
    parser.set_version_flag("--version", MIRELON_VERSION);
    std::vector<std::pair<CLI::App*, mirelon::tools::Run>> known;
    for (const mirelon::tools::Command& command : mirelon::tools::commands()) {
        CLI::App* const own = parser.add_subcommand(command.name, command.summary);
        known.emplace_back(own, command.define(*own));
    }
    if (argc > 1 && *argv[1] != '-')
        expectCommand(argv[1]);
    try {
        parser.parse(argc, argv);
    } catch (const CLI::Success& help) {
        return parser.exit(help);
    } catch (const CLI::ParseError& error) {
        return refuse(std::string(error.what()) + " (--help shows how)");
    }
    for (const auto& [own, run] : known) {
        if (own->parsed())
            run();
    }
    return exitDone;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const mirelon::tools::ExitStatus& status) {
        return status.value;
    } catch (const mirelon::tools::CommandError& error) {
        return refuse(error.what());
    } catch (const mirelon::hosting::HostingError& error) {
        return refuse(error.what());
    } catch (const std::exception& error) {
        return refuse(std::string("unexpected: ") + error.what());
    }
}
