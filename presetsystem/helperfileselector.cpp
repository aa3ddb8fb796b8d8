#include "presetsystem/helperfileselector.h"

#include "platform/helperprocess.h"

#include <algorithm>
#include <sstream>
#include <unistd.h>

namespace mirelon {

namespace {

using Arguments = std::vector<std::string>;

std::string startingPoint(const VSTGUI::PlatformFileSelectorConfig& config, bool save) {
    const std::string& directory = config.initialPath.getString();
    return save ? directory + config.defaultSaveName.getString() : directory;
}

Arguments zenityArguments(const VSTGUI::PlatformFileSelectorConfig& config, bool save) {
    Arguments arguments{"--file-selection", "--title=" + config.title.getString()};
    if (save)
        arguments.insert(arguments.end(), {"--save", "--confirm-overwrite"});
    if (const std::string start = startingPoint(config, save); !start.empty())
        arguments.push_back("--filename=" + start);
    for (const VSTGUI::PlatformFileExtension& type : config.extensions)
        arguments.push_back("--file-filter=" + type.description.getString() + " | *." +
                            type.extension.getString());
    arguments.emplace_back("--file-filter=All files | *");
    return arguments;
}

Arguments kdialogArguments(const VSTGUI::PlatformFileSelectorConfig& config, bool save) {
    std::string types;
    for (const VSTGUI::PlatformFileExtension& type : config.extensions)
        types += type.description.getString() + " (*." + type.extension.getString() + ");;";
    // An empty starting point is the host's current folder.
    return {"--title", config.title.getString(), save ? "--getsavefilename" : "--getopenfilename",
            startingPoint(config, save), types + "All files (*)"};
}

// One absolute path a line; anything else the program may have said is none.
std::vector<VSTGUI::UTF8String> pathsIn(const std::string& output) {
    std::vector<VSTGUI::UTF8String> paths;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty() && line.front() == '/')
            paths.emplace_back(line);
    return paths;
}

} // namespace

std::vector<HelperProgram> desktopHelpers() {
    return {{"/usr/bin/kdialog", HelperDialect::kdialog},
            {"/usr/bin/zenity", HelperDialect::zenity}};
}

HelperFileSelector::HelperFileSelector(VSTGUI::PlatformFileSelectorStyle style,
                                       std::vector<HelperProgram> programs)
    : style(style)
    , programs(std::move(programs)) {}

bool HelperFileSelector::run(const VSTGUI::PlatformFileSelectorConfig& config) {
    const auto program = std::ranges::find_if(programs, [](const HelperProgram& candidate) {
        return access(candidate.path.c_str(), X_OK) == 0;
    });
    if (program == programs.end())
        return false;
    const bool save = style == VSTGUI::PlatformFileSelectorStyle::SelectSaveFile;
    const Arguments arguments = program->dialect == HelperDialect::zenity
                                    ? zenityArguments(config, save)
                                    : kdialogArguments(config, save);
    // A copy: the object that asked may be gone when the user has answered.
    const auto done = config.doneCallback;
    const std::optional<std::string> output = runHelper(program->path, arguments);
    if (output && done)
        done(pathsIn(*output));
    return output.has_value();
}

} // namespace mirelon
