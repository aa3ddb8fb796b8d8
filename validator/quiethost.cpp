#include "validator/quiethost.h"

#include <atomic>
#include <cstring>

namespace mirelon::validator {

namespace {

std::atomic<int> announcedRate{44100};
std::atomic<int> announcedBlock{1024};

VstIntPtr putText(void* buffer, const char* text) noexcept {
    if (buffer == nullptr)
        return 0;
    std::memcpy(buffer, text, std::strlen(text) + 1);
    return 1;
}

// Always the same moment: nothing here depends on time passing.
const VstTimeInfo* timeInfo() noexcept {
    static const VstTimeInfo info = [] {
        VstTimeInfo fresh{};
        fresh.sampleRate = 44100.0;
        fresh.tempo = 120.0;
        fresh.timeSigNumerator = 4;
        fresh.timeSigDenominator = 4;
        return fresh;
    }();
    return &info;
}

} // namespace

void announce(int sampleRate, int blockSize) noexcept {
    announcedRate.store(sampleRate, std::memory_order_relaxed);
    announcedBlock.store(blockSize, std::memory_order_relaxed);
}

VstIntPtr quietHost(AEffect* /*effect*/, VstInt32 opcode, VstInt32 /*index*/, VstIntPtr /*value*/,
                    void* ptr, float /*opt*/) noexcept {
    switch (opcode) {
    case audioMasterVersion:
        return kVstVersion;
    case audioMasterGetSampleRate:
        return announcedRate.load(std::memory_order_relaxed);
    case audioMasterGetBlockSize:
        return announcedBlock.load(std::memory_order_relaxed);
    case audioMasterGetTime:
        return reinterpret_cast<VstIntPtr>(timeInfo());
    case audioMasterGetCurrentProcessLevel:
        return 2; // real time
    case audioMasterGetVendorString:
    case audioMasterGetProductString:
        return putText(ptr, "mirelon-host");
    default:
        return 0;
    }
}

} // namespace mirelon::validator
