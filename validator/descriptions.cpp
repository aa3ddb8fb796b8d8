// What each check does, and which use of a plug-in it stands for.
#include "validator/check.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace mirelon::validator {

namespace {

struct Description {
    std::string_view check;
    const char* text;
};

constexpr std::array descriptions{
    Description{"load-twice",
                "Makes two instances at a time and one more after both are gone. Each must have a "
                "record and an object of its own and the same unique ID. Any session with the "
                "plug-in on two tracks does this."},
    Description{"load-time", "Loads and opens the plug-in. More than two seconds are unusual: "
                             "hosts scan whole folders of plug-ins."},
    Description{"load-memory", "Makes sixteen instances. More than 32 MiB for each are unusual."},
    Description{"symbols-entry",
                "Reads the file's symbols: the entry point of its format must be exported "
                "(VSTPluginMain or main, lv2_descriptor, clap_entry), or no host finds the "
                "plug-in."},
    Description{"symbols-leaked",
                "Reads the file's symbols. Exported names besides the entry points are unusual: "
                "where a host loads plug-ins with their names in common, two that export the same "
                "one get into each other's way."},
    Description{"identity-stable",
                "Asks for name, maker, product, version and category, twice and of two instances. "
                "The texts must end within 128 bytes and all must be the same each time: hosts "
                "find a plug-in of a session again by them."},
    Description{"programs-stable",
                "Chooses every program, 256 at most, and numbers of none. The plug-in must be on "
                "the program "
                "that was chosen, or stay where it was, and call it by one name. To take a "
                "program and give another number for it is unusual only."},
    Description{"parameter-texts-stable",
                "Asks for the name, label and display of each parameter twice. They must end "
                "within 128 bytes and be the same; hosts list them for automation."},
    Description{"parameter-values-in-range",
                "Asks for the value of each parameter. It must be from 0 to 1 and stay until it is "
                "set."},
    Description{"parameter-properties-stable",
                "Asks for the properties of each parameter twice. They must be the same, with a "
                "label that ends and an integer range that is not the wrong way round."},
    Description{"audio-every-rate-and-block",
                "Processes noise at rates from 8 to 768 kHz in blocks of 1 to 16384 frames. What "
                "comes out must be finite, inputs and everything around the buffers untouched. "
                "Sound systems differ in their rates and block sizes. Not to manage rates below "
                "22.05 or above 192 kHz or blocks of more than 8192 frames is unusual only."},
    Description{"audio-double-precision",
                "The same in double precision, of plug-ins that say they have it."},
    Description{"audio-changing-blocks",
                "Processes blocks of changing length, none longer than announced, as hosts do "
                "around automation and loops."},
    Description{"audio-in-place",
                "Processes with the outputs in the inputs' buffers, as hosts do to save copies. "
                "The result must be that of separate buffers. Says nothing of plug-ins that give "
                "something else each time."},
    Description{"audio-silence",
                "Processes silence from the start. Sound is a fault of a plug-in that says it "
                "makes none then, because hosts stop processing it; else it is unusual. "
                "Instruments are not asked."},
    Description{"state-round-trip",
                "Sets parameters, saves the state, sets others and gives the state back. Every "
                "parameter must show again what it showed. That a state is written differently "
                "the next time is unusual, and so is a parameter that the state keeps in steps "
                "and the display does not show so."},
    Description{"state-fresh-instance",
                "Gives the saved state to a new instance, as a host that opens a session."},
    Description{"state-with-editor",
                "Gives the saved state back while the editor is open, and closes the editor."},
    Description{"automation-every-block",
                "Sets every parameter before each of 500 blocks. The audio must stay finite and "
                "the values from 0 to 1."},
    Description{"automation-holds",
                "Sets each parameter and processes. The value must stay as it was right after it "
                "was set."},
    Description{"notes-played",
                "Plays on all sixteen channels of an effect that takes MIDI, an instrument or one "
                "that says so: notes that begin and end at any frame, begin twice or end without "
                "a begin, wheels, pressure, pedals and programs, and all keys at once. The sound "
                "must stay finite. Says nothing of how it sounds."},
    Description{"notes-crowded",
                "Sends such an effect 512 events in a block, two at every frame, as recorded "
                "wheels and pressure on many channels come to."},
    Description{"editor-opened-twice",
                "Opens the editor in a host's window, closes it, and does so again. It must put "
                "its window into the host's and take it away. An X error counts as a fault, as it "
                "ends a host; without a window manager on the display, and in OpenGL's own "
                "requests where it has no graphics card, it is unusual only."},
    Description{"editor-in-two-instances",
                "Has the editors of two instances open at a time and closes one of them."},
    Description{"editor-while-processing",
                "Opens and closes the editor three times while another thread processes."},
    Description{"editor-sixty-openings",
                "Opens and closes the editor sixty times, in every third round beside that of "
                "another instance, as in a day's work. Windows, files and memory left behind by "
                "each opening show at the end."},
    Description{"editor-before-audio",
                "Opens the editor of an instance that was told no rate and no block size yet, and "
                "sets parameters, as in a host without a sound system."},
    Description{"suspend-resume-loop",
                "Suspends and resumes two hundred times, now and then twice in a row, and "
                "processes in between, as transports are stopped and started."},
    Description{"rate-change-while-running",
                "Changes rate and block size without suspending first. No known host does; a "
                "plug-in that does not survive it is reported as unusual."},
    Description{"parameter-strange-values",
                "Sets parameters to infinities, numbers beyond the range, denormal numbers and "
                "what is no number. Ordinary values must put everything right again. No known "
                "host sends such values; not to take them is reported as unusual."},
    Description{"parameter-strange-indices",
                "Sets and asks for parameters that there are none of. No parameter may move. No "
                "known host does this; not to take it is reported as unusual."},
    Description{"parameter-random-bits",
                "Sets parameters to random bits, 3000 times. Not to take it is reported as "
                "unusual."},
    Description{"notes-strange-bytes",
                "Sends an effect that takes MIDI bytes that are no message: data beyond 127, data "
                "without a status, the system's statuses. Ordinary notes must sound again "
                "afterwards. No known host sends such bytes; not to take them is reported as "
                "unusual."},
    Description{"notes-strange-events",
                "The same with events before and behind the block and out of order, events of "
                "types that there are not, and a list of none."},
    Description{"state-every-length",
                "Gives the first 0 to 2000 bytes of a state. A good state afterwards must put "
                "everything right. Only damaged sessions hold such states; not to take them is "
                "reported as unusual."},
    Description{"state-every-byte-flipped",
                "Gives the state with one byte inverted, each in turn. Not to take it is reported "
                "as unusual."},
    Description{"state-noise",
                "Gives noise for a state, 1 MiB and two hundred times the usual size. Not to take "
                "it is reported as unusual."},
    Description{"state-other-byte-order",
                "Gives the state with its words in the other byte order, as of another machine. "
                "Not to take it is reported as unusual."},
    Description{"messages-strange-atoms",
                "Sends messages of wrong types and sizes, cut off and of random bytes, as a "
                "window would that is not the plug-in's own. Not to take them is reported as "
                "unusual."},
    Description{"messages-strange-objects",
                "The same with objects whose properties are missing, doubled, or of another type "
                "than they should be."},
    Description{"messages-strange-sequences",
                "The same with sequences whose events are out of order, out of the block, or said "
                "to be longer than they are."},
    Description{"threads-audio-automation-state",
                "Processes on one thread, sets parameters on another and saves and restores the "
                "state on the main thread, all at once."},
    Description{"threads-with-editor",
                "The same while the editor opens and closes four times; state and editor are the "
                "main thread's, as in hosts."},
    Description{"realtime-process",
                "Watches what the plug-in calls while it processes. Allocation, files and system "
                "calls are faults: they take as long as they like, and the sound breaks up. A "
                "lock is unusual."},
    Description{"realtime-set-parameter",
                "Watches what the plug-in calls while a parameter is set, which hosts do on the "
                "audio thread."},
    Description{"realtime-with-editor",
                "Watches the audio thread, processing and automation, while the editor is open."},
    Description{"realtime-notes",
                "Watches what an effect that takes MIDI calls while it is handed notes and "
                "processes them."},
    Description{"realtime-messages",
                "Watches run() while messages of the plug-in's own come back to it and it tells "
                "its window of restored states."},
    Description{"entry-reloaded",
                "Loads the file, plays and unloads it, five times, and does so five times more "
                "while the file stays in memory, as a host that scans its plug-ins anew."},
    Description{"entry-counted",
                "Initialises the file for two users and lets one of them leave. The other must "
                "still have its factory and get instances. CLAP 1.1 has one init() a process, "
                "newer versions any number; not to count them is reported as unusual."},
    Description{"extensions-unknown",
                "Asks for extensions that there are not. The answer must be none: hosts ask for "
                "many that are newer than a plug-in, and call what they get."},
    Description{"host-without-extensions",
                "Sets, processes, saves, loads and opens the window in a host that offers no "
                "extension at all. That the window stays away is unusual only."},
    Description{"host-without-one-extension",
                "The same in hosts that each lack one of parameters, state, timers and window."},
    Description{"instances-independent",
                "Has two instances of one factory: values, state and sound of the one must not "
                "depend on the other. Says nothing of the sound of plug-ins that give something "
                "else each time."},
    Description{"parameter-identifiers",
                "Lists the parameters again, of an active instance with other values and of a "
                "second one. Each must have an identifier of its own and everything be the same: "
                "sessions and automation know parameters by it."},
    Description{"parameter-ranges",
                "Looks at each parameter's range, which must be of finite numbers and hold "
                "default and value. A single value, or whole numbers between broken ends, are "
                "unusual."},
    Description{"parameter-texts-read-back",
                "Asks for the text of ten values of each parameter and has it read back, as when "
                "a user confirms what a host's field shows. Another value is a fault, no text and "
                "rounding are unusual. Texts must keep to buffers of 1 to 256 bytes."},
    Description{"parameter-set-and-read",
                "Sets each parameter to ten values of its range with events and asks for it, as "
                "hosts that think of all parameters from 0 to 1."},
    Description{"parameter-unknown",
                "Asks for parameters beyond the last and for identifiers that there are not, and "
                "sets those. No known host does; to answer or to move is reported as unusual."},
    Description{"state-in-parts",
                "Saves and loads through streams that take and give 1, 7 and 691 bytes at a time, "
                "as streams may. The state must come back whole."},
    Description{"state-cut-short",
                "Loads from streams that end too early. Either the state comes whole or nothing "
                "moves. Only damaged sessions hold such states; not to take them is reported as "
                "unusual."},
    Description{"state-stream-fails",
                "The same with streams that fail, and saves into such ones, which must not be "
                "called a success. It takes a full or broken disk, so it is reported as unusual."},
    Description{"events-every-frame",
                "Sends each parameter events at every frame of a block, several at one frame and "
                "one at the last frame, as dense automation does. The last value must be the one "
                "it has then."},
    Description{"events-unknown-types",
                "Sends events of types that CLAP may come to have, with the body of one that sets "
                "a parameter. Nothing may move: hosts are newer than plug-ins."},
    Description{"flush-without-audio",
                "Sets each parameter with flush() while the plug-in is not active, and while it "
                "is active and does not process, as hosts do while nothing plays."},
    Description{"events-foreign-spaces",
                "Sends events of spaces that are not CLAP's own. Nothing may move. Hardly a host "
                "has any, so it is reported as unusual."},
    Description{"events-beyond-block",
                "Sends events with times behind the end of the block. No known host does; not to "
                "take them is reported as unusual."},
    Description{"activation-loop",
                "Activates and deactivates a hundred times with other rates and block sizes, and "
                "processes in between, as sound systems are changed. No parameter may move."},
    Description{"processing-loop",
                "Stops, starts and resets two hundred times and processes in between. No "
                "parameter may move; another sound than after an activation is unusual."},
    Description{"threads-mistaken",
                "Calls what is the main thread's on another one, one call at a time. It is a "
                "host's mistake; not to take it is reported as unusual."},
    Description{"realtime-events",
                "Watches process() with an event for each parameter in every block."},
    Description{"realtime-flush-and-reset",
                "Watches flush(), starting, stopping and resetting of an active plug-in, which "
                "are the audio thread's."},
};

} // namespace

const char* descriptionOf(const Check& check) {
    const auto* const found = std::ranges::find(descriptions, check.name, &Description::check);
    return found != descriptions.end() ? found->text : nullptr;
}

} // namespace mirelon::validator
