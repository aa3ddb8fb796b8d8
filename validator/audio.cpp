// Audio at every rate and block size.
#include "validator/audioblock.h"
#include "validator/instance.h"

#include <array>
#include <span>

namespace mirelon::validator {

namespace {

// What sound cards run at, and what only files have.
constexpr std::array usualRates{22050, 32000, 44100, 48000, 88200, 96000, 176400, 192000};
constexpr std::array strangeRates{8000, 11025, 16000, 384000, 768000};
constexpr std::array blocks{1,  2,  3,   7,   16,  17,  31,   32,   33,   63,   64,
                            65, 99, 127, 256, 441, 999, 1024, 2048, 4096, 8191, 8192};
constexpr int largestBlock = blocks.back();
// Sound servers and bounces end there; only files are rendered in longer ones.
constexpr std::array strangeBlocks{16384};

bool hasAudio(const hosting::Effect& effect) {
    return effect.record().numOutputs > 0;
}

void needAudio(const hosting::Effect& effect) {
    if (!hasAudio(effect))
        throw Skipped("has no outputs");
}

template <typename Sample>
void everyBlock(hosting::Effect& effect, Noise& noise, std::span<const int> rates,
                std::span<const int> sizes) {
    for (const int rate : rates) {
        for (const int block : sizes) {
            doing("processing at ", rate, " Hz in blocks of ", block, " frames");
            start(effect, rate, block);
            Buffers<Sample> buffers(effect, block);
            for (int i = 0; i < 2; ++i) {
                buffers.in.fill(noise);
                buffers.process(effect, "at ", rate, " Hz in blocks of ", block);
            }
        }
    }
}

template <typename Sample>
void everyRateAndBlock(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    needAudio(effect);
    Noise noise(subject.seed);
    everyBlock<Sample>(effect, noise, usualRates, blocks);
    setUnusual(true);
    everyBlock<Sample>(effect, noise, strangeRates, blocks);
    everyBlock<Sample>(effect, noise, usualRates, strangeBlocks);
}

std::string single(const Subject& subject) {
    everyRateAndBlock<float>(subject);
    return std::to_string(usualRates.size() + strangeRates.size()) + " rates, " +
           std::to_string(blocks.size() + strangeBlocks.size()) + " block sizes";
}

std::string doubles(const Subject& subject) {
    {
        const Instance instance(subject);
        if (!instance.effect.hasFlag(effFlagsCanDoubleReplacing))
            throw Skipped("processes no doubles");
    }
    everyRateAndBlock<double>(subject);
    return {};
}

std::string changingBlocks(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    needAudio(effect);
    Noise noise(subject.seed);
    start(effect, 48000, largestBlock);
    for (int i = 0; i < 400; ++i) {
        const int block = 1 + static_cast<int>(noise.below(i % 20 == 0 ? largestBlock : 700));
        doing("processing a block of ", block, " frames at 48000 Hz");
        Buffers<float> buffers(effect, block);
        buffers.in.fill(noise);
        buffers.process(effect, "in a block of ", block, " below the announced size");
    }
    return {};
}

// Eight blocks of the same noise through a fresh instance.
std::vector<AudioBlock<float>> run(const Subject& subject, bool inPlace) {
    constexpr int block = 512;
    Instance instance(subject);
    doing("processing ", inPlace ? "in place" : "noise", " at 44100 Hz in blocks of ", block);
    start(instance.effect, 44100, block);
    Noise noise(subject.seed);
    std::vector<AudioBlock<float>> results;
    for (int i = 0; i < 8; ++i) {
        Buffers<float> buffers(instance.effect, block);
        buffers.in.fill(noise);
        if (inPlace) {
            instance.effect.process(buffers.in.data(), buffers.in.data(), block);
            results.push_back(buffers.in);
        } else {
            instance.effect.process(buffers.in.data(), buffers.out.data(), block);
            results.push_back(buffers.out);
        }
    }
    return results;
}

bool same(const std::vector<AudioBlock<float>>& a, const std::vector<AudioBlock<float>>& b) {
    return std::ranges::equal(a, b, [](const auto& x, const auto& y) { return x.sameBits(y); });
}

std::string inPlace(const Subject& subject) {
    {
        const Instance instance(subject);
        needAudio(instance.effect);
        if (instance.effect.record().numInputs != instance.effect.record().numOutputs)
            throw Skipped("has not as many inputs as outputs");
    }
    const auto apart = run(subject, false);
    if (!same(apart, run(subject, false)))
        throw Skipped("puts out something else each time");
    require(same(apart, run(subject, true)), "puts out something else in place");
    return {};
}

std::string silence(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    needAudio(effect);
    constexpr float inaudible = 1e-9F; // -180 dB: what guards against denormals leave
    if (effect.hasFlag(effFlagsIsSynth))
        throw Skipped("is an instrument");
    start(effect, 48000, 512);
    doing("processing silence");
    for (int i = 0; i < 100; ++i) {
        Buffers<float> buffers(effect, 512);
        buffers.in.fill(0.0F);
        buffers.process(effect, "from silence");
        const bool silent = buffers.out.allBelow(inaudible);
        require(silent || !effect.hasFlag(effFlagsNoSoundInStop),
                "makes sound of silence in block ", i, ", which it says it does not");
        expect(silent, "makes sound of silence in block ", i);
    }
    return {};
}

constexpr std::array audioTable{
    Check{"audio-every-rate-and-block", 3, Formats::all, single, 120},
    Check{"audio-double-precision", 3, Formats::vst2, doubles, 120},
    Check{"audio-changing-blocks", 3, Formats::all, changingBlocks, 60},
    Check{"audio-in-place", 3, Formats::all, inPlace, 60},
    Check{"audio-silence", 3, Formats::all, silence, 15},
};

} // namespace

std::span<const Check> audioChecks() {
    return audioTable;
}

} // namespace mirelon::validator
