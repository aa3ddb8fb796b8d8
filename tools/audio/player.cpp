#include "tools/audio/player.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace mirelon::tools {

namespace {

constexpr std::size_t measuringRoom = std::size_t{8} << 20U; // ten seconds at 48 kHz
constexpr double fadeSeconds = 0.01;

float towards(float value, float target, float step) {
    return value < target ? std::min(value + step, target) : std::max(value - step, target);
}

} // namespace

Player::Player(hosting::Effect& effect, Material file)
    : Player(effect, std::move(file), 0) {}

Player::Player(hosting::Effect& effect, int rate)
    : Player(effect, Material{}, rate) {}

Player::Player(hosting::Effect& effect, Material file, int rate)
    : effect(effect)
    , material(std::move(file))
    , live(rate > 0)
    , sampleRate(live ? rate : material.rate)
    , measured(measuringRoom)
    , inputs(effect.record().numInputs, blockFrames)
    , outputs(effect.record().numOutputs, blockFrames)
    , shareStep(static_cast<float>(1.0 / (fadeSeconds * sampleRate))) {
    effect.setSampleRate(static_cast<float>(sampleRate));
    effect.setBlockSize(blockFrames);
    effect.setPrecision(kVstProcessPrecision32);
    effect.resume();
    const auto latency = static_cast<std::size_t>(std::max(0, effect.record().initialDelay));
    for (std::size_t side = 0; side < 2; ++side) {
        taken[side].resize(blockFrames);
        original[side].resize(blockFrames);
        delayed[side].resize(latency);
    }
}

Player::~Player() {
    effect.suspend();
}

void Player::play() {
    if (!live && !playing && position() >= *length())
        seek(0);
    playing = true;
}

void Player::seek(std::int64_t frame) {
    if (!live)
        wantedPosition = std::clamp<std::int64_t>(frame, 0, *length());
}

std::int64_t Player::position() const {
    const std::int64_t wanted = wantedPosition;
    return wanted != noSeek ? wanted : nextFrame.load();
}

std::optional<std::int64_t> Player::length() const {
    return live ? std::nullopt : std::optional(static_cast<std::int64_t>(material.frames()));
}

void Player::setGains(LoudnessGains gains) {
    processedGain = gains.processed;
    originalGain = gains.original;
}

void Player::measure(EqualLoudness& meter) {
    while (const auto message = measured.take()) {
        Heard heard;
        std::memcpy(&heard, message->bytes.data(), sizeof heard);
        const std::size_t frames = message->port;
        const auto part = [frames](const std::array<std::array<float, blockFrames>, 2>& signal) {
            return StereoPart{{signal[0].data(), frames}, {signal[1].data(), frames}};
        };
        meter.add(part(heard.original), part(heard.processed));
    }
}

void Player::fill(std::span<float> heard, std::span<const float> recorded) noexcept {
    while (!heard.empty()) {
        const std::size_t frames = std::min(heard.size() / 2, blockFrames);
        obeySeek();
        const bool sounding = playing;
        takeInput(frames, recorded);
        for (std::size_t side = 0; side < std::min<std::size_t>(inputs.channels(), 2); ++side)
            std::copy_n(taken[side].begin(), frames, inputs[side]);
        effect.process(inputs.pointers(), outputs.pointers(), static_cast<VstInt32>(frames));
        delayOriginal(frames);
        if (sounding)
            keepForMeasuring(frames);
        mix(heard.first(2 * frames));
        heard = heard.subspan(2 * frames);
        recorded = recorded.subspan(std::min(recorded.size(), 2 * frames));
    }
}

void Player::obeySeek() noexcept {
    // Its asker sees the one place or the other, never the old one again.
    const std::int64_t wanted = wantedPosition;
    if (wanted == noSeek)
        return;
    nextFrame = wanted;
    std::int64_t expected = wanted;
    wantedPosition.compare_exchange_strong(expected, noSeek);
}

void Player::takeInput(std::size_t frames, std::span<const float> recorded) noexcept {
    if (live) {
        takeRecorded(frames, recorded);
        return;
    }
    auto next = static_cast<std::size_t>(nextFrame.load());
    bool sounding = playing;
    // The end of a file that is looped is its begin.
    const auto turnAtEnd = [&] {
        if (!sounding || next < material.frames())
            return;
        if (looping)
            next = 0;
        else
            playing = sounding = false;
    };
    for (std::size_t i = 0; i < frames; ++i) {
        turnAtEnd();
        for (std::size_t side = 0; side < 2; ++side)
            taken[side][i] = sounding ? material.channels[side][next] : 0.0F;
        next += sounding ? 1 : 0;
    }
    turnAtEnd();
    nextFrame = static_cast<std::int64_t>(next);
}

void Player::takeRecorded(std::size_t frames, std::span<const float> recorded) noexcept {
    const std::size_t there = playing ? std::min(frames, recorded.size() / 2) : 0;
    for (std::size_t side = 0; side < 2; ++side) {
        for (std::size_t i = 0; i < there; ++i)
            taken[side][i] = recorded[2 * i + side];
        std::fill(taken[side].begin() + static_cast<std::ptrdiff_t>(there), taken[side].end(),
                  0.0F);
    }
    nextFrame += static_cast<std::int64_t>(there);
}

void Player::delayOriginal(std::size_t frames) noexcept {
    const std::size_t latency = delayed[0].size();
    for (std::size_t i = 0; i < frames; ++i) {
        for (std::size_t side = 0; side < 2; ++side) {
            float sample = taken[side][i];
            if (latency > 0)
                std::swap(sample, delayed[side][delayPosition]);
            original[side][i] = sample;
        }
        if (latency > 0)
            delayPosition = (delayPosition + 1) % latency;
    }
}

void Player::keepForMeasuring(std::size_t frames) noexcept {
    for (std::size_t side = 0; side < 2; ++side) {
        std::copy_n(original[side].begin(), frames, block.original[side].begin());
        if (outputs.channels() > 0)
            std::copy_n(outputs[std::min(side, outputs.channels() - 1)], frames,
                        block.processed[side].begin());
    }
    measured.put(static_cast<std::uint32_t>(frames), std::as_bytes(std::span(&block, 1)));
}

void Player::mix(std::span<float> heard) noexcept {
    const bool around = bypassed;
    const float processedTarget = around ? 0.0F : processedGain.load();
    const float originalTarget = around ? originalGain.load() : 0.0F;
    for (std::size_t i = 0; 2 * i < heard.size(); ++i) {
        processedShare = towards(processedShare, processedTarget, shareStep);
        originalShare = towards(originalShare, originalTarget, shareStep);
        for (std::size_t side = 0; side < 2; ++side) {
            const std::size_t channels = outputs.channels();
            // The only output is heard on both sides. A share of nothing leaves out
            // what is no number as well.
            const float processed = channels > 0 && processedShare > 0.0F
                                        ? processedShare * outputs[std::min(side, channels - 1)][i]
                                        : 0.0F;
            heard[2 * i + side] =
                originalShare > 0.0F ? processed + originalShare * original[side][i] : processed;
        }
    }
}

} // namespace mirelon::tools
