// screenshot OUT.png: what a user sees when the editor opens.
#include "tools/audio/livefeed.h"
#include "tools/commanderror.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/editoroptions.h"
#include "tools/nearestname.h"
#include "tools/pngfile.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace mirelon::tools {

namespace {

using namespace std::chrono_literals;

struct Options {
    EditorOptions editor;
    std::string picture;
    std::string input;
};

// For the window to appear, and for the meters to follow the sound.
constexpr auto openingTime = 500ms;
constexpr auto listeningTime = 1500ms;

void screenshot(const Options& options) {
    if (!sameName(std::filesystem::path(options.picture).extension().string(), ".png"))
        throw CommandError(options.picture + ": the picture is a PNG file, its name ends in .png");
    const auto plugin = loadForEditor(options.editor);
    hosting::Effect& effect = plugin->effect;
    const auto editor = openEditor(effect, hosting::WindowKind::bare, hosting::Drive::both);
    editor->runFor(openingTime);
    std::optional<LiveFeed> feed;
    if (!options.input.empty()) {
        feed.emplace(effect, options.input, Output::none);
        editor->runFor(listeningTime);
    }
    const hosting::Picture picture = editor->window().picture();
    writePng(picture, options.picture);
    std::printf("%s: %d x %d pixels\n", options.picture.c_str(), picture.width, picture.height);
}

Run define(CLI::App& parser) {
    const auto options = std::make_shared<Options>();
    parser.add_option("OUT", options->picture, "The picture, a .png")->required();
    addEditorOptions(parser, options->editor);
    parser
        .add_option("--input", options->input,
                    "Let the meters follow this audio file for a moment first")
        ->type_name("FILE");
    return [options] { screenshot(*options); };
}

} // namespace

Command screenshotCommand() {
    return {"screenshot", "Take a picture of the plug-in's editor", define};
}

} // namespace mirelon::tools
