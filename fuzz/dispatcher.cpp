// An instance that a host commands at random: any opcode and number, with
// pointers such as the interface promises them, and any answer from the host.
#include "fuzz/input.h"
#include "shell/audioeffect.h"

#include <array>

using mirelon::fuzz::expect;
using mirelon::fuzz::Input;

namespace {

// Answers the host's calls of the running input with its bytes.
Input* hostAnswers = nullptr;

VstIntPtr host(AEffect* /*effect*/, VstInt32 opcode, VstInt32 /*index*/, VstIntPtr /*value*/,
               void* /*ptr*/, float /*opt*/) {
    if (opcode == audioMasterVersion)
        return kVstVersion;
    // Only numbers: an answer that is a pointer would have to point somewhere.
    const bool isNumber = opcode == audioMasterGetSampleRate || opcode == audioMasterGetBlockSize ||
                          opcode == audioMasterGetOutputLatency ||
                          opcode == audioMasterUpdateDisplay || opcode == audioMasterBeginEdit ||
                          opcode == audioMasterEndEdit;
    return isNumber && hostAnswers != nullptr ? hostAnswers->take<std::int32_t>() : 0;
}

AEffect* newInstance() {
    AudioEffect* const effect = createEffectInstance(host);
    expect(effect != nullptr);
    return effect->getAeffect();
}

void process(AEffect* effect, Input& input) {
    const std::size_t frames = input.take<std::uint8_t>() % 40;
    std::array<std::vector<float>, 4> channels;
    for (auto& channel : channels)
        for (std::size_t i = 0; i < frames; ++i)
            channel.push_back(input.take<float>());
    std::array<float*, 2> in{channels[0].data(), channels[1].data()};
    std::array<float*, 2> out{channels[2].data(), channels[3].data()};
    effect->processReplacing(effect, in.data(), out.data(), static_cast<VstInt32>(frames));
    if (effect->process != nullptr)
        effect->process(effect, in.data(), out.data(), static_cast<VstInt32>(frames));
}

// One command; false when the instance is gone.
bool dispatch(AEffect* effect, Input& input) {
    // Mostly opcodes that there are.
    const auto wide = input.take<std::int16_t>();
    const VstInt32 opcode = wide % 4 == 0 ? input.take<std::int32_t>() : (wide & 0x7f) % 82 - 1;
    const auto index = input.take<std::int32_t>();
    const auto value = input.take<std::int64_t>();
    const auto opt = input.take<float>();
    const bool withPointer = input.take<std::uint8_t>() % 8 != 0;

    if (opcode == effSetChunk) {
        const std::size_t size = wide % 3 == 0 ? 692 : input.take<std::uint16_t>() % 1500;
        auto chunk = input.bytes(size);
        effect->dispatcher(effect, opcode, index, static_cast<VstIntPtr>(size),
                           withPointer ? chunk.data() : nullptr, opt);
        return true;
    }
    if (opcode == effGetChunk) {
        void* chunk = nullptr;
        const VstIntPtr size = effect->dispatcher(effect, opcode, index, value, &chunk, opt);
        expect(size == 692 && chunk != nullptr);
        if (wide % 2 == 0) // its own pointer back
            effect->dispatcher(effect, effSetChunk, index, size, chunk, opt);
        return true;
    }
    if (opcode == effProcessEvents) {
        VstEvents events{};
        effect->dispatcher(effect, opcode, index, value, withPointer ? &events : nullptr, opt);
        return true;
    }
    // A host's text buffer, or a record: 256 bytes, the input's own text in it.
    std::vector<char> buffer(256);
    const std::string text = input.text(buffer.size() - 1);
    std::ranges::copy(text, buffer.begin());
    const VstIntPtr answer = effect->dispatcher(effect, opcode, index, value,
                                                withPointer ? buffer.data() : nullptr, opt);
    expect(opcode != effClose || answer == 1);
    return opcode != effClose;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    hostAnswers = &input;
    AEffect* effect = newInstance();
    for (int step = 0; step < 200 && !input.empty(); ++step) {
        switch (input.take<std::uint8_t>() % 4) {
        case 0:
            effect->setParameter(effect, input.take<std::int8_t>(), input.take<float>());
            break;
        case 1:
            effect->getParameter(effect, input.take<std::int32_t>());
            break;
        case 2:
            process(effect, input);
            break;
        default:
            if (!dispatch(effect, input))
                effect = newInstance();
            break;
        }
    }
    effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
    hostAnswers = nullptr;
    return 0;
}
