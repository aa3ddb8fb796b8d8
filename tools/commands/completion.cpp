// completion bash|zsh: the script with which a shell completes command lines.
#include "tools/completion.h"

#include "tools/commands.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

namespace mirelon::tools {

namespace {

Run defineCompletion(CLI::App& parser) {
    const auto shell = std::make_shared<std::string>();
    parser.add_option("SHELL", *shell, "bash or zsh")
        ->required()
        ->type_name("")
        ->check(CLI::IsMember({"bash", "zsh"}));
    return [shell, &parser] {
        const CLI::App& program = *parser.get_parent();
        const std::string script =
            *shell == "bash" ? bashCompletion(program) : zshCompletion(program);
        std::fputs(script.c_str(), stdout);
    };
}

} // namespace

Command completionCommand() {
    return {"completion", "Print a script that completes command lines in a shell",
            defineCompletion};
}

} // namespace mirelon::tools
