// An LV2 amplifier with a port of every kind, no window and no state. Its
// defects are chosen by the environment, for the validator to find.
#include "tests/validator/transcript.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <lv2/atom/atom.h>
#include <lv2/atom/util.h>
#include <lv2/core/lv2.h>
#include <lv2/urid/urid.h>
#include <mutex>
#include <new>
#include <span>

namespace {

mirelon::test::Transcript transcript;

enum Port : std::uint32_t {
    kDelay,
    kOut,
    kFactor,
    kMode,
    kMute,
    kTone,
    kSteps,
    kIn,
    kPeak,
    kEarlier,
    kNotify,
    kVoltage,
    kControl,
    kLater,
    kNumPorts
};

bool hasDefect(const char* name) {
    const char* const chosen = std::getenv("MIRELON_DEFECT");
    return chosen != nullptr && std::strcmp(chosen, name) == 0;
}

struct Amplifier {
    const float* number(Port port) const { return static_cast<const float*>(ports[port]); }

    std::array<void*, kNumPorts> ports{};
    LV2_URID sequence = 0;
    LV2_URID object = 0;
    bool poisoned = false;
    bool spoken = false;
    bool atomDefect = hasDefect("message-atom");
    bool objectDefect = hasDefect("message-object");
    bool sequenceDefect = hasDefect("message-sequence");
    bool lockDefect = hasDefect("message-lock");
    std::mutex access;
};

Amplifier& of(LV2_Handle instance) {
    return *static_cast<Amplifier*>(instance);
}

LV2_Handle instantiate(const LV2_Descriptor*, double rate, const char*,
                       const LV2_Feature* const* features) {
    transcript.note("instantiate", 0, rate);
    auto* const amplifier = new (std::nothrow) Amplifier;
    for (; amplifier != nullptr && *features != nullptr; ++features)
        if (std::strcmp((*features)->URI, LV2_URID__map) == 0) {
            const auto& map = *static_cast<const LV2_URID_Map*>((*features)->data);
            amplifier->sequence = map.map(map.handle, LV2_ATOM__Sequence);
            amplifier->object = map.map(map.handle, LV2_ATOM__Object);
        }
    if (amplifier != nullptr && amplifier->sequence == 0) {
        delete amplifier; // it requires what it did not get
        return nullptr;
    }
    return amplifier;
}

// Sends a first message, and back what it gets, as it is.
void answer(Amplifier& self) {
    const auto* const in = static_cast<const LV2_Atom_Sequence*>(self.ports[kControl]);
    auto* const out = static_cast<LV2_Atom_Sequence*>(self.ports[kNotify]);
    const std::uint32_t room = out->atom.size;
    out->atom = {sizeof(LV2_Atom_Sequence_Body), self.sequence};
    out->body = {0, 0};
    if (!self.spoken) {
        struct {
            LV2_Atom_Event event;
            std::int64_t number;
        } greeting{{{0}, {8, 1}}, 42};
        lv2_atom_sequence_append_event(out, room, &greeting.event);
        self.spoken = true;
    }
    if (in->atom.type != self.sequence) {
        self.poisoned = self.poisoned || self.sequenceDefect;
        return;
    }
    const auto* const end = reinterpret_cast<const std::uint8_t*>(&in->body) + in->atom.size;
    LV2_ATOM_SEQUENCE_FOREACH(in, event) {
        const auto* const body = reinterpret_cast<const std::uint8_t*>(event + 1);
        if (body > end || event->body.size > static_cast<std::size_t>(end - body))
            return;
        if (self.lockDefect)
            const std::lock_guard held(self.access);
        if (event->body.type == self.object)
            self.poisoned = self.poisoned || self.objectDefect;
        else
            self.poisoned = self.poisoned || self.atomDefect;
        lv2_atom_sequence_append_event(out, room, event);
    }
}

void cleanup(LV2_Handle instance) {
    transcript.note("cleanup", 0);
    transcript.write();
    delete &of(instance);
}

void noteRun(const Amplifier& self, std::uint32_t frames) {
    transcript.note("run", 0, frames, std::as_bytes(std::span(self.number(kIn), frames)));
    for (const Port port : {kFactor, kMode, kMute, kTone, kSteps})
        transcript.note("value", static_cast<int>(port), *self.number(port));
    // At least its head, whatever it says of its size.
    const auto& messages = *static_cast<const LV2_Atom_Sequence*>(self.ports[kControl]);
    const std::size_t size =
        std::max(lv2_atom_total_size(&messages.atom), static_cast<std::uint32_t>(sizeof messages));
    transcript.note("messages", 0, std::span(reinterpret_cast<const std::byte*>(&messages), size));
}

void run(LV2_Handle instance, std::uint32_t frames) {
    Amplifier& self = of(instance);
    noteRun(self, frames);
    answer(self);
    *static_cast<float*>(self.ports[kDelay]) = 7.0F;
    const auto* const in = self.number(kIn);
    auto* const out = static_cast<float*>(self.ports[kOut]);
    const float mode = *self.number(kMode);
    const float factor = *self.number(kMute) > 0.0F           ? 0.0F
                         : std::isfinite(mode) && mode > 5.0F ? -*self.number(kFactor)
                                                              : *self.number(kFactor);
    float peak = 0.0F;
    for (std::uint32_t i = 0; i < frames; ++i) {
        out[i] = self.poisoned ? std::numeric_limits<float>::quiet_NaN() : in[i] * factor;
        peak = std::fmax(peak, std::fabs(out[i]));
    }
    *static_cast<float*>(self.ports[kPeak]) = peak;
}

constexpr LV2_Descriptor descriptor{
    "urn:mirelon:test:amplifier",
    instantiate,
    [](LV2_Handle instance, std::uint32_t port, void* data) { of(instance).ports[port] = data; },
    nullptr,
    run,
    nullptr,
    cleanup,
    nullptr};

} // namespace

extern "C" __attribute__((visibility("default"))) const LV2_Descriptor*
lv2_descriptor(std::uint32_t index) {
    return index == 0 ? &descriptor : nullptr;
}
