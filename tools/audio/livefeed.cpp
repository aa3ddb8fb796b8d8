#include "tools/audio/livefeed.h"

#include "tools/audio/soundsystemnoise.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <chrono>
#include <rtaudio/RtAudio.h>

namespace mirelon::tools {

namespace {

void silent(RtAudioError::Type /*type*/, const std::string& /*text*/) {}

// The first sound system that has a device. RtAudio's own choice would complain of
// each that has none. Throws RtAudioError where there is none at all.
std::unique_ptr<RtAudio> soundSystem() {
    std::vector<RtAudio::Api> systems;
    RtAudio::getCompiledApi(systems);
    for (const RtAudio::Api system : systems) {
        auto audio = std::make_unique<RtAudio>(system);
        audio->showWarnings(false);
        if (audio->getDeviceCount() > 0)
            return audio;
    }
    throw RtAudioError("no sound device", RtAudioError::NO_DEVICES_FOUND);
}

} // namespace

// A stream that asks for blocks from its construction to its destruction.
class LiveFeed::SoundDevice {
  public:
    // Throws RtAudioError when the device does not play.
    SoundDevice(LiveFeed& feed, unsigned rate)
        : audio(soundSystem()) {
        RtAudio::StreamParameters place;
        place.deviceId = audio->getDefaultOutputDevice();
        place.nChannels = 2;
        RtAudio::StreamOptions options;
        options.streamName = "mirelon-host";
        auto frames = static_cast<unsigned>(blockFrames);
        audio->openStream(&place, nullptr, RTAUDIO_FLOAT32, rate, &frames, &SoundDevice::fill,
                          &feed, &options, &silent);
        audio->startStream();
        name = audio->getDeviceInfo(place.deviceId).name;
    }
    ~SoundDevice() {
        if (audio->isStreamOpen())
            audio->closeStream();
    }
    SoundDevice(const SoundDevice&) = delete;
    SoundDevice& operator=(const SoundDevice&) = delete;

    std::string name;

  private:
    static int fill(void* output, void* /*input*/, unsigned frames, double /*time*/,
                    RtAudioStreamStatus /*status*/, void* self) {
        auto& feed = *static_cast<LiveFeed*>(self);
        auto* out = static_cast<float*>(output);
        for (std::size_t done = 0; done < frames;) {
            const std::size_t part = std::min<std::size_t>(frames - done, blockFrames);
            feed.process(part);
            for (std::size_t i = 0; i < part; ++i)
                for (const float* const channel : {feed.heard(0), feed.heard(1)})
                    *out++ = channel != nullptr ? channel[i] : 0.0F;
            done += part;
        }
        return 0;
    }

    std::unique_ptr<RtAudio> audio;
};

LiveFeed::LiveFeed(hosting::Effect& effect, const std::filesystem::path& file, Output output)
    : effect(effect)
    , inputs(effect.record().numInputs, blockFrames)
    , outputs(effect.record().numOutputs, blockFrames) {
    AudioReader reader(file);
    rate = reader.sampleRate();
    std::vector<double> left(blockFrames);
    std::vector<double> right(blockFrames);
    while (const std::size_t count = reader.read(left, right)) {
        for (std::size_t i = 0; i < count; ++i) {
            material[0].push_back(static_cast<float>(left[i]));
            material[1].push_back(static_cast<float>(right[i]));
        }
    }
    if (material[0].empty())
        throw CommandError(file.string() + ": there is no sound in it");

    effect.setSampleRate(static_cast<float>(rate));
    effect.setBlockSize(blockFrames);
    effect.resume();
    if (output == Output::none || !openSoundDevice())
        timekeeper = std::thread([this] { keepTime(); });
}

LiveFeed::~LiveFeed() {
    ending = true;
    sound.reset();
    if (timekeeper.joinable())
        timekeeper.join();
    effect.suspend();
}

bool LiveFeed::openSoundDevice() {
    silenceSoundLibraries();
    try {
        sound = std::make_unique<SoundDevice>(*this, static_cast<unsigned>(rate));
        deviceName = sound->name;
        return true;
    } catch (const RtAudioError&) {
        return false;
    }
}

void LiveFeed::keepTime() {
    using Clock = std::chrono::steady_clock;
    const auto blockTime = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(static_cast<double>(blockFrames) / rate));
    for (auto next = Clock::now(); !ending; next += blockTime) {
        process(blockFrames);
        std::this_thread::sleep_until(next + blockTime);
    }
}

void LiveFeed::process(std::size_t frames) {
    for (std::size_t i = 0; i < frames; ++i) {
        for (std::size_t side = 0; side < std::min<std::size_t>(inputs.channels(), 2); ++side)
            inputs[side][i] = material[side][position];
        position = (position + 1) % material[0].size();
    }
    effect.process(inputs.pointers(), outputs.pointers(), static_cast<VstInt32>(frames));
}

const float* LiveFeed::heard(std::size_t side) {
    return outputs[std::min(side, outputs.channels() - (outputs.channels() > 0 ? 1 : 0))];
}

} // namespace mirelon::tools
