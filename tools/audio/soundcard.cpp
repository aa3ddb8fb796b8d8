#include "tools/audio/soundcard.h"

#include "tools/audio/soundsystemnoise.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <cctype>
#include <rtaudio/RtAudio.h>
#include <string_view>

namespace mirelon::tools {

namespace {

constexpr unsigned channels = 2;
constexpr unsigned blockFrames = 512;

void silent(RtAudioError::Type /*type*/, const std::string& /*text*/) {}

struct FoundCard {
    RtAudio::Api system;
    unsigned number; // in its system
    unsigned preferredRate;
    SoundCardDescription description;
};

std::unique_ptr<RtAudio> opened(RtAudio::Api system) {
    auto audio = std::make_unique<RtAudio>(system);
    audio->showWarnings(false);
    return audio;
}

std::vector<FoundCard> allCards() {
    silenceSoundLibraries();
    std::vector<RtAudio::Api> systems;
    RtAudio::getCompiledApi(systems);
    std::vector<FoundCard> cards;
    for (const RtAudio::Api system : systems) {
        const auto audio = opened(system);
        const unsigned count = audio->getDeviceCount();
        const unsigned usual = audio->getDefaultOutputDevice();
        const bool first = cards.empty();
        for (unsigned number = 0; number < count; ++number) {
            try {
                const RtAudio::DeviceInfo info = audio->getDeviceInfo(number);
                if (!info.probed || info.outputChannels < channels)
                    continue;
                cards.push_back(
                    {system,
                     number,
                     info.preferredSampleRate,
                     {RtAudio::getApiDisplayName(system), info.name, info.outputChannels,
                      info.inputChannels, first && number == usual, info.sampleRates}});
            } catch (const RtAudioError&) {
                continue; // in another program's hands
            }
        }
    }
    // A system may have devices and none that it calls its own choice.
    if (!cards.empty() &&
        std::ranges::none_of(cards, [](const FoundCard& card) { return card.description.usual; }))
        cards.front().description.usual = true;
    return cards;
}

std::string lowered(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

FoundCard chosenCard(const std::string& name) {
    std::vector<FoundCard> cards = allCards();
    if (cards.empty())
        throw CommandError("there is no sound card to play on");
    const auto keep = [&cards](auto wanted) {
        std::vector<FoundCard> kept;
        std::ranges::copy_if(cards, std::back_inserter(kept), wanted);
        return kept;
    };
    if (name.empty())
        return keep([](const FoundCard& card) { return card.description.usual; }).front();
    auto fitting = keep([&](const FoundCard& card) { return card.description.name == name; });
    if (fitting.empty())
        fitting = keep([&](const FoundCard& card) {
            return lowered(card.description.name).find(lowered(name)) != std::string::npos;
        });
    if (fitting.empty())
        throw CommandError("there is no sound card \"" + name + "\" (edit --list-devices)");
    if (fitting.size() > 1 && fitting[0].description.name != fitting[1].description.name)
        throw CommandError("\"" + name + "\" is \"" + fitting[0].description.name + "\" or \"" +
                           fitting[1].description.name + '"');
    return fitting.front();
}

std::string list(const std::vector<unsigned>& numbers) {
    std::string text;
    for (const unsigned number : numbers)
        text.append(text.empty() ? "" : ", ").append(std::to_string(number));
    return text;
}

} // namespace

std::vector<SoundCardDescription> soundCards() {
    std::vector<SoundCardDescription> descriptions;
    for (FoundCard& card : allCards())
        descriptions.push_back(std::move(card.description));
    return descriptions;
}

class SoundCard::Stream {
  public:
    Stream(const std::string& name, Recorded recorded)
        : card(chosenCard(name))
        , audio(opened(card.system)) {
        if (recorded == Recorded::nothing)
            return;
        input = card.description.inputs > 0 ? card.number : audio->getDefaultInputDevice();
        inputs = input < audio->getDeviceCount()
                     ? std::min(channels, audio->getDeviceInfo(input).inputChannels)
                     : 0;
        if (inputs == 0)
            throw CommandError(card.description.name + ": has no input");
        taken.resize(std::size_t{channels} * blockFrames);
    }
    ~Stream() {
        if (audio->isStreamOpen())
            audio->closeStream();
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    void start(AudioSource& asked, int rate) {
        source = &asked;
        RtAudio::StreamParameters out;
        out.deviceId = card.number;
        out.nChannels = channels;
        RtAudio::StreamParameters in;
        in.deviceId = input;
        in.nChannels = inputs;
        RtAudio::StreamOptions options;
        options.streamName = "mirelon-host";
        unsigned frames = blockFrames;
        try {
            audio->openStream(&out, inputs > 0 ? &in : nullptr, RTAUDIO_FLOAT32,
                              static_cast<unsigned>(rate), &frames, &Stream::fill, this, &options,
                              &silent);
            audio->startStream();
        } catch (const RtAudioError&) {
            const auto& rates = card.description.rates;
            const bool known = std::ranges::find(rates, static_cast<unsigned>(rate)) != rates.end();
            throw CommandError(card.description.name + ": does not play " + std::to_string(rate) +
                               " Hz" + (known ? "" : " (it has " + list(rates) + ')'));
        }
    }

    const FoundCard card;

  private:
    static int fill(void* output, void* recorded, unsigned frames, double /*time*/,
                    RtAudioStreamStatus /*status*/, void* self) {
        static_cast<Stream*>(self)->pass(static_cast<float*>(output),
                                         static_cast<const float*>(recorded), frames);
        return 0;
    }

    void pass(float* heard, const float* recorded, std::size_t frames) noexcept {
        if (inputs == 0 || recorded == nullptr) {
            source->fill({heard, channels * frames}, {});
            return;
        }
        // A single input comes in on both sides.
        for (std::size_t done = 0; done < frames;) {
            const std::size_t part = std::min<std::size_t>(frames - done, blockFrames);
            for (std::size_t i = 0; i < part; ++i)
                for (std::size_t side = 0; side < channels; ++side)
                    taken[channels * i + side] =
                        recorded[inputs * (done + i) + std::min<std::size_t>(side, inputs - 1)];
            source->fill({heard + channels * done, channels * part},
                         {taken.data(), channels * part});
            done += part;
        }
    }

    std::unique_ptr<RtAudio> audio;
    AudioSource* source = nullptr;
    unsigned input = 0;
    unsigned inputs = 0; // channels; 0: nothing is recorded
    std::vector<float> taken;
};

SoundCard::SoundCard(const std::string& name, Recorded recorded) try
    : stream(std::make_unique<Stream>(name, recorded)) {
} catch (const RtAudioError& error) {
    throw CommandError("the sound card cannot be used: " + error.getMessage());
}

SoundCard::~SoundCard() = default;

std::string SoundCard::name() const {
    return stream->card.description.name;
}

int SoundCard::usualRate() const {
    return static_cast<int>(stream->card.preferredRate);
}

void SoundCard::start(AudioSource& source, int rate) {
    stream->start(source, rate);
}

} // namespace mirelon::tools
