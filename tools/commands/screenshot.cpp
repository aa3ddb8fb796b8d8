// screenshot OUT.png: what a user sees when the editor opens.
#include "tools/audio/player.h"
#include "tools/audio/silentdevice.h"
#include "tools/commanderror.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/editoroptions.h"
#include "tools/nearestname.h"
#include "tools/pngfile.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace mirelon::tools {

namespace {

using namespace std::chrono_literals;

struct ScreenshotOptions {
    EditorOptions editor;
    std::string picture;
    std::string input;
};

constexpr auto lookInterval = 250ms;
constexpr auto longestWait = 5s;
constexpr auto listeningTime = 1500ms; // for the meters to follow the sound

// Until two looks in a row see the same, and more than one colour.
void waitUntilDrawn(hosting::EditorWindow& editor) {
    hosting::Picture before;
    for (auto waited = 0ms; waited < longestWait; waited += lookInterval) {
        editor.runFor(lookInterval);
        hosting::Picture now = editor.window().picture();
        const bool blank =
            std::ranges::adjacent_find(now.rgb, std::not_equal_to()) == now.rgb.end();
        if (!blank && now == before)
            return;
        before = std::move(now);
    }
}

void screenshot(const ScreenshotOptions& options) {
    if (!sameName(std::filesystem::path(options.picture).extension().string(), ".png"))
        throw CommandError(options.picture + ": the picture is a PNG file, its name ends in .png");
    const auto plugin = loadForEditor(options.editor);
    hosting::Effect& effect = plugin->effect;
    const auto editor = openEditor(effect, hosting::WindowKind::bare, hosting::Drive::both);
    waitUntilDrawn(*editor);
    std::optional<Player> player;
    SilentDevice clock;
    if (!options.input.empty()) {
        Material file = readMaterial(options.input);
        plugin->announce(file.rate, Player::blockFrames);
        player.emplace(effect, std::move(file));
        clock.start(*player, player->rate());
        editor->runFor(listeningTime);
    }
    const hosting::Picture picture = editor->window().picture();
    writePng(picture, options.picture);
    std::printf("%s: %d x %d pixels\n", options.picture.c_str(), picture.width, picture.height);
}

Run defineScreenshot(CLI::App& parser) {
    const auto options = std::make_shared<ScreenshotOptions>();
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
    return {"screenshot", "Take a picture of the plug-in's editor", defineScreenshot};
}

} // namespace mirelon::tools
