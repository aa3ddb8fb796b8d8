// CLAP hosts that offer little, and what a plug-in says to names that it does not know.
#include "hosting/clapeditor.h"
#include "hosting/hostingerror.h"
#include "hosting/hostwindow.h"
#include "validator/clapchecks.h"
#include "validator/clapsubject.h"
#include "validator/xerrors.h"

#include <X11/Xlib.h>
#include <array>
#include <chrono>
#include <thread>

namespace mirelon::validator {

namespace {

using namespace std::chrono_literals;

// Answers a note where there is no display. A plug-in may need more of its host for a
// window.
std::string openWindow(hosting::ClapInstance& plugIn, const std::string& where) {
    hosting::ClapEditor editor(plugIn);
    if (!editor.exists())
        return {};
    XInitThreads();
    noteXErrors();
    try {
        hosting::HostWindow window("check", 640, 480, hosting::WindowKind::ordinary);
        window.show();
        doing("opening its window in ", where);
        expect(editor.open(window.id()), "opens no window in ", where);
        for (const auto end = std::chrono::steady_clock::now() + 100ms;
             std::chrono::steady_clock::now() < end; std::this_thread::sleep_for(5ms)) {
            plugIn.serve();
            window.serve();
        }
        doing("closing its window in ", where);
        editor.close();
    } catch (const hosting::DisplayError&) {
        return "without its window: there is no X display";
    }
    return {};
}

// What a session has of a plug-in, from init() to destroy().
std::string leadALife(ClapSubject& plugIn, std::uint64_t seed, const std::string& where) {
    Noise noise(seed);
    doing("setting parameters in ", where);
    plugIn.scramble(noise);
    const auto state = plugIn.plugIn().save();
    doing("processing in ", where);
    plugIn.activate(48000.0, 64);
    for (int i = 0; i < 20; ++i) {
        plugIn.addForAll(64, noise);
        plugIn.process(64, noise, "in ", where);
        plugIn.plugIn().serve();
    }
    plugIn.plugIn().deactivate();
    doing("giving its state back in ", where);
    if (state)
        require(plugIn.plugIn().load(*state), "refuses its own state in ", where);
    doing("calling on_main_thread() in ", where);
    plugIn.plugIn().plugin().on_main_thread(&plugIn.plugIn().plugin());
    std::string note = openWindow(plugIn.plugIn(), where);
    doing("ending the instance in ", where);
    return note;
}

std::string withoutExtensions(const Subject& subject) {
    const std::string where = "a host without extensions";
    doing("making an instance in ", where);
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library, hosting::ClapExtensions::none);
    return leadALife(plugIn, subject.seed, where);
}

std::string withoutOne(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    std::string note;
    for (const std::string_view missing : hosting::ClapHost::extensionNames()) {
        const std::string where = joined("a host without ", missing);
        doing("making an instance in ", where);
        ClapSubject plugIn(library, missing);
        note = leadALife(plugIn, subject.seed, where);
    }
    return note;
}

std::string unknownNames(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    const clap_plugin& made = plugIn.plugIn().plugin();
    for (const char* const name :
         {"", "clap", "clap.", "clap.no-such-extension", "clap.no-such-extension.draft/9",
          "clap.params/77", "clap.PARAMS", "mirelon.check/1"}) {
        doing("asking it for the extension \"", name, '"');
        require(made.get_extension(&made, name) == nullptr, "answers with functions for \"", name,
                "\", an extension that there is not");
    }
    return {};
}

std::string independent(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    constexpr int block = 64;
    constexpr int blocks = 20;
    // What one instance makes of noise, while `beside` does something to others.
    const auto audioOfOne = [&](auto beside) {
        ClapSubject plugIn(library);
        plugIn.activate(48000.0, block);
        Noise noise(subject.seed);
        std::vector<AudioBlock<float>> heard;
        heard.reserve(blocks);
        for (int i = 0; i < blocks; ++i) {
            beside();
            Buffers<float> buffers(static_cast<int>(plugIn.plugIn().inputChannels()),
                                   static_cast<int>(plugIn.plugIn().outputChannels()), block);
            buffers.in.fill(noise);
            plugIn.processWith(buffers, "as one of two instances");
            heard.push_back(buffers.out);
        }
        return heard;
    };
    const auto same = [](const auto& one, const auto& other) {
        return std::ranges::equal(one, other,
                                  [](const auto& a, const auto& b) { return a.sameBits(b); });
    };
    doing("processing in one instance alone");
    const auto alone = audioOfOne([] {});
    const bool repeats = same(alone, audioOfOne([] {}));
    doing("processing in two instances in turn, with other values in one");
    ClapSubject other(library);
    other.activate(48000.0, block);
    Noise noise(subject.seed + 1);
    const auto beside = audioOfOne([&] {
        other.addForAll(block, noise);
        other.process(block, noise, "as one of two instances");
    });
    require(!repeats || same(alone, beside),
            "sounds otherwise when another instance processes beside it");

    ClapSubject still(library);
    const auto values = still.values();
    const auto state = still.plugIn().save();
    const auto requireSame = [&](const char* what) {
        const auto now = still.values();
        for (std::size_t i = 0; i < values.size(); ++i)
            require(now[i] == values[i], nameOf(still.parameters()[i]), " moves from ", values[i],
                    " to ", now[i], " when another instance ", what);
    };
    doing("setting parameters of another instance");
    other.plugIn().deactivate();
    for (const clap_param_info& parameter : other.parameters()) {
        other.set(parameter, valueAt(parameter, 0.75));
        requireSame("is set");
    }
    doing("giving a state to another instance");
    if (const auto others = other.plugIn().save()) {
        ClapSubject third(library);
        third.plugIn().load(*others);
        requireSame("is given a state");
        require(still.plugIn().save() == state || still.plugIn().save() != still.plugIn().save(),
                "has another state when another instance is given one");
    }
    return repeats ? "" : "its audio differs from run to run and was not compared";
}

constexpr std::array claphostsTable{
    Check{"extensions-unknown", 1, Formats::clap, unknownNames, 30},
    Check{"host-without-extensions", 2, Formats::clap, withoutExtensions, 60},
    Check{"host-without-one-extension", 2, Formats::clap, withoutOne, 60},
    Check{"instances-independent", 2, Formats::clap, independent, 60},
};

} // namespace

std::span<const Check> clapHostChecks() {
    return claphostsTable;
}

} // namespace mirelon::validator
