// An effect with one gain and three programs, and with what a host must take:
// latency, more channels than two, texts without an end, its own text
// conversion. Single precision only, no chunks.
#include "tests/hosting/plugins/effectrecord.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr VstInt32 latency = 5;
constexpr std::array programs{"unity", "half", "none"};
constexpr std::array programGains{1.0F, 0.5F, 0.0F};

struct Gain {
    AEffect record;
    float gain = 1.0F;
    VstInt32 program = 0;
    std::array<std::array<float, latency>, 2> delayed{};
};

void copyText(char* buffer, const char* text) {
    std::memcpy(buffer, text, std::strlen(text) + 1);
}

Gain& of(AEffect* effect) {
    return *static_cast<Gain*>(effect->object);
}

void process(AEffect* effect, float** inputs, float** outputs, VstInt32 frames) {
    Gain& self = of(effect);
    for (std::size_t channel = 0; channel < 2; ++channel) {
        for (VstInt32 i = 0; i < frames; ++i) {
            auto& delayed = self.delayed[channel];
            const float heard = delayed.front();
            std::memmove(delayed.data(), delayed.data() + 1, (latency - 1) * sizeof(float));
            delayed.back() = inputs[channel][i] * self.gain + inputs[2][i];
            outputs[channel][i] = heard;
        }
    }
    for (VstInt32 i = 0; i < frames; ++i)
        outputs[2][i] = 1.0F;
}

} // namespace

// What hosts asked for so far.
extern "C" __attribute__((visibility("default"))) std::vector<mirelon::test::Dispatched> dispatched;
std::vector<mirelon::test::Dispatched> dispatched;

namespace {

VstIntPtr dispatch(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                   float opt) {
    Gain& self = of(effect);
    auto* const text = static_cast<char*>(ptr);
    dispatched.push_back({opcode, index, value, opt});
    switch (opcode) {
    case effClose:
        delete &self;
        return 1;
    case effGetProgram:
        return self.program;
    case effSetProgram:
        self.program = static_cast<VstInt32>(value);
        self.gain = programGains[static_cast<std::size_t>(value)];
        return 0;
    case effGetProgramName:
        copyText(text, programs[static_cast<std::size_t>(self.program)]);
        return 0;
    case effGetProgramNameIndexed:
        if (index < 0 || index >= std::ssize(programs))
            return 0;
        copyText(text, programs[static_cast<std::size_t>(index)]);
        return 1;
    case effGetParamName:
        copyText(text, "Level");
        return 0;
    case effGetParamLabel: // no zero anywhere
        std::memset(text, 'x', 256);
        return 0;
    case effGetParamDisplay:
        std::snprintf(text, 32, "%.3f", static_cast<double>(self.gain));
        return 0;
    case effString2Parameter:
        if (std::string(text) != "a quarter")
            return 0;
        self.gain = 0.25F;
        return 1;
    default:
        return 0;
    }
}

} // namespace

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback host) {
    if (host(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0F) == 0)
        return nullptr;
    auto* const self = new Gain{mirelon::test::idleRecord()};
    AEffect& record = self->record;
    record.object = self;
    record.dispatcher = dispatch;
    record.processReplacing = process;
    record.setParameter = [](AEffect* effect, VstInt32, float value) { of(effect).gain = value; };
    record.getParameter = [](AEffect* effect, VstInt32) { return of(effect).gain; };
    record.numParams = 1;
    record.numPrograms = static_cast<VstInt32>(programs.size());
    record.numInputs = 3;
    record.numOutputs = 3;
    record.initialDelay = latency;
    host(&record, audioMasterUpdateDisplay, 0, 0, nullptr, 0.0F);
    return &record;
}
