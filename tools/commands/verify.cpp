// verify FILE...: whether the plug-in can load preset and bank files.
#include "tools/commanderror.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/imagefile.h"
#include "tools/imageproblems.h"
#include "tools/loadedplugin.h"
#include "tools/parametervalue.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

namespace mirelon::tools {

namespace {

struct VerifyOptions {
    std::string plugin;
    std::vector<std::string> files;
};

// How many things are wrong with it.
std::size_t verify(const std::string& file, const hosting::Effect& effect) {
    const std::vector<std::byte> bytes = readBytes(file, sizeof(bankfilestruct) + 1);
    const ImageReport report =
        examine(file, bytes, effect.record().uniqueID, parameterNames(effect));
    if (report.problems.empty()) {
        const auto header = headerOf(bytes, effect.record().uniqueID);
        std::printf("%s: a good %s\n", file.c_str(), kindName(header->kind.value()));
    }
    for (const ImageProblem& problem : report.problems)
        std::printf("%s: byte %zu: %s\n", file.c_str(), problem.offset, problem.text.c_str());
    for (const std::string& note : report.notes)
        std::printf("%s: note: %s\n", file.c_str(), note.c_str());
    return report.problems.size();
}

std::string counted(std::size_t number, const char* thing, const char* fate) {
    return std::to_string(number) + ' ' + thing + (number == 1 ? "" : "s") + ' ' + fate;
}

void verifyAll(const VerifyOptions& options) {
    LoadedPlugin plugin(options.plugin);
    std::size_t problems = 0;
    std::size_t unreadable = 0;
    for (const std::string& file : options.files) {
        try {
            problems += verify(file, plugin.effect);
        } catch (const CommandError& error) {
            std::printf("%s\n", error.what());
            ++unreadable;
        }
    }
    std::fflush(stdout);
    std::string verdict;
    if (problems > 0)
        verdict = counted(problems, "problem", "found");
    if (unreadable > 0)
        verdict += (verdict.empty() ? "" : ", ") + counted(unreadable, "file", "not read");
    if (!verdict.empty())
        throw CommandError(verdict);
}

Run defineVerify(CLI::App& parser) {
    const auto options = std::make_shared<VerifyOptions>();
    parser.add_option("FILE", options->files, "Preset files and bank files")->required();
    addPluginOption(parser, options->plugin);
    return [options] { verifyAll(*options); };
}

} // namespace

Command verifyCommand() {
    return {"verify", "Say what is wrong with preset and bank files", defineVerify};
}

} // namespace mirelon::tools
