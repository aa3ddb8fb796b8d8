// A CLAP plug-in activated, started, reset and stopped in loops, and called on threads
// that are not the ones meant.
#include "validator/clapchecks.h"
#include "validator/clapsubject.h"

#include <array>
#include <future>

namespace mirelon::validator {

namespace {

void requireSame(const ClapSubject& plugIn, const std::vector<double>& before, const char* after) {
    const auto now = plugIn.values();
    for (std::size_t i = 0; i < now.size(); ++i)
        require(now[i] == before[i], nameOf(plugIn.parameters()[i]), " moves from ", before[i],
                " to ", now[i], " with ", after);
}

std::string activationLoop(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    Noise noise(subject.seed);
    plugIn.scramble(noise);
    plugIn.plugIn().serve();
    const auto values = plugIn.values();
    constexpr std::array rates{44100, 96000, 48000, 192000, 88200, 22050};
    for (int i = 0; i < 100; ++i) {
        const int rate = rates[static_cast<std::size_t>(i) % rates.size()];
        const int block = 1 + static_cast<int>(noise.below(2048));
        doing("activating it for time ", i, ", at ", rate, " Hz with blocks of ", block, " frames");
        plugIn.activate(rate, block);
        for (std::uint32_t blocks = noise.below(3); blocks > 0; --blocks)
            plugIn.process(1 + static_cast<int>(noise.below(static_cast<std::uint32_t>(block))),
                           noise, "after activation ", i, " at ", rate, " Hz with blocks of ",
                           block);
        plugIn.plugIn().deactivate();
        requireSame(plugIn, values, "an activation");
    }
    return {};
}

// What a plug-in makes of the same noise.
AudioBlock<float> soundOf(ClapSubject& plugIn, std::uint64_t seed) {
    constexpr int frames = 256;
    Buffers<float> buffers(static_cast<int>(plugIn.plugIn().inputChannels()),
                           static_cast<int>(plugIn.plugIn().outputChannels()), frames);
    Noise noise(seed);
    buffers.in.fill(noise);
    plugIn.processWith(buffers, "after a reset or an activation");
    return buffers.out;
}

std::string processingLoop(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    Noise noise(subject.seed);
    plugIn.scramble(noise);
    plugIn.plugIn().serve();
    const auto values = plugIn.values();
    plugIn.activate(48000.0, 256);
    const auto first = soundOf(plugIn, subject.seed);
    plugIn.activate(48000.0, 256);
    const bool repeats = soundOf(plugIn, subject.seed).sameBits(first);
    for (int i = 0; i < 200; ++i) {
        doing("stopping and starting it for time ", i);
        plugIn.plugIn().stopProcessing();
        if (i % 3 == 0)
            plugIn.plugIn().reset();
        require(plugIn.plugIn().startProcessing(), "cannot be started again, for time ", i);
        if (i % 5 == 0)
            plugIn.plugIn().reset();
        plugIn.process(1 + i % 256, noise, "started for time ", i);
        requireSame(plugIn, values, i % 3 == 0 || i % 5 == 0 ? "a reset" : "a start");
    }
    doing("comparing what it makes of noise after a reset and after an activation");
    plugIn.plugIn().reset();
    expect(!repeats || soundOf(plugIn, subject.seed).sameBits(first),
           "sounds otherwise after a reset than after an activation");
    return {};
}

// One call at a time: nothing of this is a race, and no host does it on purpose.
std::string mistakenThreads(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    hosting::ClapInstance& instance = plugIn.plugIn();
    Noise noise(subject.seed);
    const auto elsewhere = [](const char* what, auto call) {
        doing("calling ", what, " on another thread than the main thread");
        std::async(std::launch::async, call).get();
    };
    const auto values = plugIn.values();
    for (const clap_param_info& parameter : plugIn.parameters()) {
        elsewhere("get_value()", [&] { static_cast<void>(plugIn.value(parameter)); });
        elsewhere("value_to_text()", [&] { instance.text(parameter.id, parameter.max_value); });
        elsewhere("text_to_value()", [&] { instance.valueOf(parameter.id, "1"); });
    }
    std::optional<std::vector<std::byte>> state;
    elsewhere("save()", [&] { state = instance.save(); });
    require(state == instance.save() || instance.save() != instance.save(),
            "saves another state on another thread");
    if (state)
        elsewhere("load()", [&] {
            require(instance.load(*state), "refuses its own state on another thread");
        });
    elsewhere("on_main_thread()", [&] { instance.plugin().on_main_thread(&instance.plugin()); });
    requireSame(plugIn, values, "calls on another thread");
    for (const clap_param_info& parameter : plugIn.parameters()) {
        const double value = valueAt(parameter, 0.5);
        elsewhere("flush()", [&] { plugIn.set(parameter, value); });
        plugIn.requireValue(parameter, value, "with flush() on another thread");
    }
    elsewhere("activate()", [&] { plugIn.activate(48000.0, 64); });
    plugIn.process(64, noise, "after an activation on another thread");
    elsewhere("process()", [&] { plugIn.process(64, noise, "on another thread"); });
    elsewhere("deactivate()", [&] { instance.deactivate(); });
    return {};
}

constexpr std::array clapactivationTable{
    Check{"activation-loop", 7, Formats::clap, activationLoop, 120},
    Check{"processing-loop", 7, Formats::clap, processingLoop, 120},
    Check{"threads-mistaken", 10, Formats::clap, mistakenThreads, 60, Guard::none,
          Severity::unusual},
};

} // namespace

std::span<const Check> clapActivationChecks() {
    return clapactivationTable;
}

} // namespace mirelon::validator
