#include "presetsystem/helperfileselector.h"

#include <algorithm>
#include <optional>
#include <unistd.h>
#include <utility>

namespace mirelon {

namespace {

using Arguments = std::vector<std::string>;

std::string startingPoint(const VSTGUI::PlatformFileSelectorConfig& config, bool save) {
    const std::string& directory = config.initialPath.getString();
    return save ? directory + config.defaultSaveName.getString() : directory;
}

Arguments zenityArguments(const VSTGUI::PlatformFileSelectorConfig& config, bool save,
                          std::uint32_t parent) {
    Arguments arguments{"--file-selection", "--title=" + config.title.getString()};
    if (parent != 0)
        arguments.push_back("--attach=" + std::to_string(parent));
    if (save)
        arguments.insert(arguments.end(), {"--save", "--confirm-overwrite"});
    if (const std::string start = startingPoint(config, save); !start.empty())
        arguments.push_back("--filename=" + start);
    for (const VSTGUI::PlatformFileExtension& type : config.extensions)
        arguments.push_back("--file-filter=" + type.description.getString() + " | *." +
                            type.extension.getString());
    if (!save)
        arguments.emplace_back("--file-filter=All files | *");
    return arguments;
}

Arguments kdialogArguments(const VSTGUI::PlatformFileSelectorConfig& config, bool save,
                           std::uint32_t parent) {
    std::string types;
    for (const VSTGUI::PlatformFileExtension& type : config.extensions)
        types += (types.empty() ? "" : ";;") + type.description.getString() + " (*." +
                 type.extension.getString() + ")";
    if (!save)
        types += ";;All files (*)";
    Arguments arguments{"--title", config.title.getString()};
    if (parent != 0)
        arguments.insert(arguments.end(), {"--attach", std::to_string(parent)});
    // An empty starting point is the host's current folder.
    arguments.insert(arguments.end(), {save ? "--getsavefilename" : "--getopenfilename",
                                       startingPoint(config, save), types});
    return arguments;
}

// All of the output but the line end that the program adds: names may hold line
// ends of their own. Nothing when that is no absolute path.
std::vector<VSTGUI::UTF8String> pathIn(std::string output) {
    if (output.ends_with('\n'))
        output.pop_back();
    if (!output.starts_with('/') || output.find('\0') != std::string::npos)
        return {};
    return {VSTGUI::UTF8String(std::move(output))};
}

} // namespace

std::vector<HelperProgram> desktopHelpers() {
    return {{"/usr/bin/kdialog", HelperDialect::kdialog},
            {"/usr/bin/zenity", HelperDialect::zenity}};
}

std::optional<HelperProgram> firstInstalled(const std::vector<HelperProgram>& programs) {
    const auto program = std::ranges::find_if(programs, [](const HelperProgram& candidate) {
        return access(candidate.path.c_str(), X_OK) == 0;
    });
    return program != programs.end() ? std::optional(*program) : std::nullopt;
}

HelperFileSelector::HelperFileSelector(VSTGUI::PlatformFileSelectorStyle style,
                                       std::uint32_t parent, std::vector<HelperProgram> programs)
    : style(style)
    , parent(parent)
    , programs(std::move(programs)) {}

bool HelperFileSelector::run(const VSTGUI::PlatformFileSelectorConfig& config) {
    answered = config.doneCallback;
    if (const auto program = firstInstalled(programs)) {
        const bool save = style == VSTGUI::PlatformFileSelectorStyle::SelectSaveFile;
        const Arguments arguments = program->dialect == HelperDialect::zenity
                                        ? zenityArguments(config, save, parent)
                                        : kdialogArguments(config, save, parent);
        dialog = HelperProcess::start(program->path, arguments,
                                      [this](std::optional<std::string> output) {
                                          answer(output ? pathIn(*std::move(output)) : Paths{});
                                      });
    }
    if (dialog != nullptr)
        return true;
    answer({});
    return false;
}

bool HelperFileSelector::cancel() {
    answer({});
    return true;
}

void HelperFileSelector::answer(Paths paths) {
    dialog.reset();
    if (const auto told = std::exchange(answered, nullptr))
        told(std::move(paths));
}

} // namespace mirelon
