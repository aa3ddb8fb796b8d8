// What a CLAP host hands over for a cycle: events of any kind, order and value,
// around audio in either precision.
#include "formats/clap/clapwrapper.h"
#include "formats/clap/parametervalues.h"
#include "fuzz/input.h"

#include <deque>

using namespace mirelon;
using fuzz::expect;

namespace {

constexpr std::uint32_t frames = 64;

// Events in memory of exactly the size that the interface gives them.
struct Events {
    std::deque<clap_event_param_value> all;
    clap_input_events list{
        this,
        [](const clap_input_events* list) {
            return static_cast<std::uint32_t>(static_cast<Events*>(list->ctx)->all.size());
        },
        [](const clap_input_events* list, std::uint32_t index) -> const clap_event_header* {
            return &static_cast<Events*>(list->ctx)->all[index].header;
        }};

    explicit Events(fuzz::Input& input) {
        while (!input.empty() && all.size() < 200) {
            clap_event_param_value event{};
            // Small numbers, so that chance finds them.
            const auto kind = input.take<std::uint8_t>();
            event.header.size = kind % 8 == 0 ? kind : sizeof event;
            event.header.time =
                kind % 16 == 1 ? input.take<std::uint32_t>() : input.take<std::uint8_t>();
            event.header.space_id = kind % 32 == 2 ? 1 : 0;
            event.header.type =
                kind % 16 == 3 ? input.take<std::uint8_t>() : std::uint16_t{CLAP_EVENT_PARAM_VALUE};
            event.param_id = kind % 16 == 4 ? input.take<std::uint32_t>()
                                            : input.take<std::uint8_t>() % (kNumParams + 1U);
            event.value = kind % 2 == 0 ? input.take<double>() : input.take<std::uint8_t>() / 255.0;
            all.push_back(event);
        }
    }
};

template <typename Sample>
void process(clap::ClapWrapper& wrapper, const Events& events) {
    std::vector<Sample> samples(std::size_t{4} * frames, Sample{0.5});
    Sample* in[] = {&samples[0], &samples[frames]};
    Sample* out[] = {&samples[2 * frames], &samples[3 * frames]};
    clap_audio_buffer input{};
    clap_audio_buffer output{};
    input.channel_count = output.channel_count = 2;
    if constexpr (std::is_same_v<Sample, float>) {
        input.data32 = in;
        output.data32 = out;
    } else {
        input.data64 = in;
        output.data64 = out;
    }
    const clap_process cycle{0, frames, nullptr, &input, &output, 1, 1, &events.list, nullptr};
    expect(wrapper.process(cycle) == CLAP_PROCESS_CONTINUE);
    for (std::size_t i = 2 * std::size_t{frames}; i < samples.size(); ++i)
        expect(samples[i] >= Sample{-1000} && samples[i] <= Sample{1000});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const clap::HostLink noHost(nullptr);
    static clap::ClapWrapper wrapper(noHost);
    fuzz::Input input(data, size);
    const auto how = input.take<std::uint8_t>() % 3;
    const Events events(input);
    if (how == 0)
        wrapper.flush(&events.list, nullptr);
    else if (how == 1)
        process<float>(wrapper, events);
    else
        process<double>(wrapper, events);
    for (int index = 0; index < kNumParams; ++index) {
        const float value = wrapper.effect().getParameter(index);
        expect(value >= 0.0F && value <= 1.0F);
        expect(static_cast<double>(value) == clap::hostValueOf(index, value));
    }
    return 0;
}
