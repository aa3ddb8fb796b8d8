// An effect that writes down what its host tells it and gives it to process, a line
// each, in the file that MIRELON_TEST_NOTES names. Both precisions; its latency is
// 100 frames; its editor leaves the host's window as it is.
#include "tests/hosting/plugins/effectrecord.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace {

constexpr VstInt32 latency = 100;
constexpr std::size_t channels = 2;

struct Notes {
    AEffect record;
    audioMasterCallback host;
};

template <typename... Values>
void note(const char* format, Values... values) {
    const char* const name = std::getenv("MIRELON_TEST_NOTES");
    if (name == nullptr)
        return;
    std::FILE* const file = std::fopen(name, "a");
    if (file == nullptr)
        std::abort();
    std::array<char, 100> line{};
    std::snprintf(line.data(), line.size(), format, values...);
    std::fprintf(file, "%s\n", line.data());
    std::fclose(file);
}

template <typename Sample>
void process(AEffect* /*effect*/, Sample** inputs, Sample** outputs, VstInt32 frames) {
    bool silent = true;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const std::span<const Sample> given(inputs[channel], static_cast<std::size_t>(frames));
        silent = silent && std::ranges::all_of(given, [](Sample s) { return s == 0; });
        std::ranges::copy(given, outputs[channel]);
    }
    note("process %d frames of %d bits%s", frames, static_cast<int>(8 * sizeof(Sample)),
         silent ? ", silent" : "");
}

VstIntPtr dispatch(AEffect* effect, VstInt32 opcode, VstInt32 /*index*/, VstIntPtr value, void* ptr,
                   float opt) {
    auto* const self = static_cast<Notes*>(effect->object);
    const auto ask = [self](VstInt32 question) {
        return static_cast<long>(self->host(&self->record, question, 0, 0, nullptr, 0.0F));
    };
    switch (opcode) {
    case effClose:
        delete self;
        return 1;
    case effSetSampleRate:
        note("sample rate %.1f", static_cast<double>(opt));
        return 0;
    case effSetBlockSize:
        note("block size %ld", static_cast<long>(value));
        return 0;
    case effSetProcessPrecision:
        note("precision %ld", static_cast<long>(value));
        return 1;
    case effMainsChanged:
        note("%s, the host says %ld Hz, blocks of %ld", value != 0 ? "resume" : "suspend",
             ask(audioMasterGetSampleRate), ask(audioMasterGetBlockSize));
        return 0;
    case effEditGetRect: {
        static ERect size{0, 0, 50, 100};
        *static_cast<ERect**>(ptr) = &size;
        return 1;
    }
    case effEditOpen:
        return 1;
    default:
        return 0;
    }
}

} // namespace

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback host) {
    auto* const self = new Notes{mirelon::test::idleRecord(), host};
    AEffect& record = self->record;
    record.object = self;
    record.dispatcher = dispatch;
    record.processReplacing = process<float>;
    record.processDoubleReplacing = process<double>;
    record.flags |= effFlagsCanDoubleReplacing | effFlagsHasEditor;
    record.initialDelay = latency;
    return &record;
}
