// edit [IN]: the plug-in's editor in a window of its own.
#include "tools/audio/livefeed.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/editoroptions.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace mirelon::tools {

namespace {

struct Options {
    EditorOptions editor;
    std::string input;
    bool play = false;
    hosting::Drive drive = hosting::Drive::both;
};

volatile std::sig_atomic_t interrupted = 0;

void edit(const Options& options) {
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
    const auto plugin = loadForEditor(options.editor);
    hosting::Effect& effect = plugin->effect;
    const auto editor = openEditor(effect, hosting::WindowKind::ordinary, options.drive);

    std::optional<LiveFeed> feed;
    if (!options.input.empty()) {
        feed.emplace(effect, options.input, options.play ? Output::soundSystem : Output::none);
        if (!feed->device().empty())
            std::printf("playing on %s\n", feed->device().c_str());
        else if (options.play)
            std::fprintf(stderr,
                         "mirelon-host: no sound output takes this file; its meters only\n");
    }
    editor->run([] { return interrupted != 0; });
}

Run define(CLI::App& parser) {
    const auto options = std::make_shared<Options>();
    auto* input = parser.add_option("IN", options->input,
                                    "An audio file that runs through the plug-in, over and over");
    addEditorOptions(parser, options->editor);
    parser.add_flag("--play", options->play, "Play it on the machine's sound output")->needs(input);
    const std::map<std::string, hosting::Drive> drives{{"idle", hosting::Drive::hostIdle},
                                                       {"glib", hosting::Drive::glib},
                                                       {"both", hosting::Drive::both}};
    parser
        .add_option("--drive", options->drive,
                    "What keeps the editor alive: the host's idle command, a GLib main loop or "
                    "both")
        ->transform(CLI::CheckedTransformer(drives));
    return [options] { edit(*options); };
}

} // namespace

Command editCommand() {
    return {"edit", "Open the plug-in's editor in a window", define};
}

} // namespace mirelon::tools
