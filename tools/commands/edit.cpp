// edit [IN]: the plug-in's editor in a window of its own, and sound through it.
#include "tools/audio/player.h"
#include "tools/audio/silentdevice.h"
#include "tools/audio/soundcard.h"
#include "tools/commanderror.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/editoroptions.h"
#include "tools/playersession.h"
#include "tools/terminal.h"

#include <CLI/CLI.hpp>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace mirelon::tools {

namespace {

struct EditOptions {
    EditorOptions editor;
    std::string file;
    bool play = false;
    bool once = false;
    bool input = false;
    std::string device;
    bool listDevices = false;
    hosting::Drive drive = hosting::Drive::both;

    bool hasSound() const { return input || !file.empty(); }
    bool isHeard() const { return input || play || !device.empty(); }
};

volatile std::sig_atomic_t interrupted = 0;

void listDevices() {
    const auto cards = soundCards();
    if (cards.empty())
        throw CommandError("there is no sound card to play on");
    for (const SoundCardDescription& card : cards) {
        std::printf("%c %s: %s (%u out, %u in)", card.usual ? '*' : ' ', card.system.c_str(),
                    card.name.c_str(), card.outputs, card.inputs);
        for (const unsigned rate : card.rates)
            std::printf(" %u", rate);
        std::printf("%s\n", card.rates.empty() ? "" : " Hz");
    }
}

std::unique_ptr<AudioDevice> deviceFor(const EditOptions& options) {
    if (!options.isHeard())
        return std::make_unique<SilentDevice>();
    return std::make_unique<SoundCard>(options.device,
                                       options.input ? Recorded::input : Recorded::nothing);
}

// Through the plug-in, whose host says of the sound what the player does.
std::unique_ptr<Player> playerOf(const EditOptions& options, LoadedPlugin& plugin,
                                 const AudioDevice& device) {
    if (options.input) {
        const int rate = device.usualRate();
        plugin.announce(rate, Player::blockFrames);
        return std::make_unique<Player>(plugin.effect, rate);
    }
    Material file = readMaterial(options.file);
    plugin.announce(file.rate, Player::blockFrames);
    return std::make_unique<Player>(plugin.effect, std::move(file));
}

// The editor with sound running through the plug-in, and keys in window and terminal.
void play(const EditOptions& options, LoadedPlugin& plugin, hosting::EditorWindow& editor,
          std::unique_ptr<AudioDevice> device) {
    const std::unique_ptr<Player> player = playerOf(options, plugin, *device);
    player->loop(!options.once);
    PlayerSession session(*player);

    // The plug-in tells when its user moves something.
    std::atomic<bool> changed{false};
    for (const VstInt32 opcode : {audioMasterAutomate, audioMasterUpdateDisplay})
        plugin.host.answer(opcode, [&changed](const hosting::HostCall&) {
            changed = true;
            return VstIntPtr{1};
        });

    const std::unique_ptr<AudioDevice> running = std::move(device); // ends before the player
    running->start(*player, player->rate());
    if (!running->name().empty())
        std::printf("playing on %s\n", running->name().c_str());
    Terminal terminal;
    if (terminal.takesKeys())
        std::printf("%s\n", std::string(playerKeysHelp()).c_str());

    const std::string name = plugin.effect.name();
    std::string shown;
    editor.run([&] {
        for (const unsigned long key : editor.window().takeKeys()) {
            if (const auto action = actionOfKeysym(key))
                session.act(*action);
        }
        for (const PlayerAction action : actionsOfText(terminal.typed()))
            session.act(action);
        if (changed.exchange(false))
            session.settingsChanged();
        session.serve();
        const std::string status = session.status();
        if (status != shown) {
            shown = status;
            editor.window().setTitle(name + " - " + status);
            terminal.showStatus(status);
        }
        return session.hasEnded() || interrupted != 0;
    });
    plugin.host.answer(audioMasterAutomate, 0);
    plugin.host.answer(audioMasterUpdateDisplay, 0);
}

void edit(const EditOptions& options) {
    if (options.listDevices) {
        listDevices();
        return;
    }
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
    if (options.isHeard() && !options.hasSound())
        throw CommandError("--device: there is nothing to play, name a file or --input");
    // First, as nothing is worth a window when there is no device.
    std::unique_ptr<AudioDevice> device = deviceFor(options);
    const auto plugin = loadForEditor(options.editor);
    const auto editor = openEditor(plugin->effect, hosting::WindowKind::ordinary, options.drive);
    if (options.hasSound())
        play(options, *plugin, *editor, std::move(device));
    else
        editor->run([] { return interrupted != 0; });
}

Run defineEdit(CLI::App& parser) {
    const auto options = std::make_shared<EditOptions>();
    auto* file = parser.add_option("IN", options->file,
                                   "An audio file that runs through the plug-in, over and over");
    addEditorOptions(parser, options->editor);
    parser.add_flag("--play", options->play, "Play it on the machine's sound output")->needs(file);
    parser.add_option("--device", options->device, "Play on this sound card (or part of its name)")
        ->type_name("NAME");
    parser.add_flag("--list-devices", options->listDevices, "Name the sound cards, and end");
    parser.add_flag("--once", options->once, "Stop at the file's end")->needs(file);
    parser.add_flag("--input", options->input, "Play what comes in at the sound card instead")
        ->excludes(file);
    parser.footer(
        std::string("Keys while sound runs through it, in its window and in the terminal:\n") +
        std::string(playerKeysHelp()));
    const std::map<std::string, hosting::Drive> drives{{"idle", hosting::Drive::hostIdle},
                                                       {"glib", hosting::Drive::glib},
                                                       {"both", hosting::Drive::both}};
    parser
        .add_option("--drive", options->drive,
                    "What keeps the editor alive: the host's idle command, a GLib main loop or "
                    "both")
        ->type_name("DRIVE")
        ->transform(CLI::Transformer(drives).description(""))
        ->transform(CLI::IsMember(drives)); // comes first
    return [options] { edit(*options); };
}

} // namespace

Command editCommand() {
    return {"edit", "Open the plug-in's editor in a window", defineEdit};
}

} // namespace mirelon::tools
