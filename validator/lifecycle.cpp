// On and off again, and a rate that changes while audio runs.
#include "validator/audioblock.h"
#include "validator/instance.h"

#include <array>

namespace mirelon::validator {

namespace {

std::string suspendAndResume(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    Noise noise(subject.seed);
    start(effect, 44100, 128);
    Buffers<float> buffers(effect, 128);
    for (int i = 0; i < 200; ++i) {
        doing("suspending and resuming for time ", i);
        effect.suspend();
        if (i % 3 == 0)
            effect.suspend();
        effect.resume();
        if (i % 5 == 0)
            effect.resume();
        buffers.in.fill(noise);
        buffers.process(effect, "after resume ", i);
    }
    return {};
}

std::string rateChangesWhileRunning(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    Noise noise(subject.seed);
    start(effect, 44100, 1024);
    for (int i = 0; i < 100; ++i) {
        constexpr std::array rates{44100, 96000, 22050, 192000, 48000};
        const int rate = rates[static_cast<std::size_t>(i) % rates.size()];
        const int block = 1 + static_cast<int>(noise.below(2048));
        doing("changing to ", rate, " Hz and blocks of ", block, " without suspending");
        announce(rate, block);
        effect.setSampleRate(static_cast<float>(rate));
        effect.setBlockSize(block);
        Buffers<float> buffers(effect, block);
        buffers.in.fill(noise);
        buffers.process(effect, "after a change to ", rate, " Hz while running");
    }
    return {};
}

constexpr std::array lifecycleTable{
    Check{"suspend-resume-loop", 7, Formats::all, suspendAndResume, 120},
    Check{"rate-change-while-running", 7, Formats::vst2, rateChangesWhileRunning, 120, Guard::none,
          Severity::unusual},
};

} // namespace

std::span<const Check> lifecycleChecks() {
    return lifecycleTable;
}

} // namespace mirelon::validator
