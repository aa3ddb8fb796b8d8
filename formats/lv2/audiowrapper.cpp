#include "formats/lv2/audiowrapper.h"

#include "formats/lv2/eventsequence.h"
#include "formats/lv2/features.h"
#include "formats/lv2/portvalues.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <lv2/urid/urid.h>

namespace mirelon::lv2 {

namespace {

// Hosts may send any number of frames; this is what the effect takes for its
// usual one.
constexpr VstInt32 usualBlock = 1024;

// The state's header is in native order, its values are big-endian: sessions
// may move between all machines of one order.
static_assert(std::endian::native == std::endian::little);

} // namespace

AudioWrapper::AudioWrapper(double sampleRate, const LV2_Feature* const* features)
    : EffectHost(static_cast<float>(sampleRate), usualBlock)
    , types(featureData<LV2_URID_Map>(features, LV2_URID__map)) {}

void AudioWrapper::connectPort(std::uint32_t number, void* data) noexcept {
    if (number < kNumPorts)
        ports[number] = data;
}

void AudioWrapper::activate() noexcept {
    dispatch(effMainsChanged, 0, 1);
    dispatch(effStartProcess);
}

void AudioWrapper::deactivate() noexcept {
    dispatch(effStopProcess);
    dispatch(effMainsChanged, 0, 0);
}

void AudioWrapper::run(std::uint32_t frames) noexcept {
    takeMessages();
    takePorts();
    process(frames);
    tellMeters();
    tellWindow();
}

void AudioWrapper::takeMessages() noexcept {
    if (!types.known())
        return;
    forEachAtom(port<const LV2_Atom_Sequence>(kPortControl), types.sequence,
                [this](std::span<const std::byte> atom) {
                    ChunkImage bank;
                    switch (readMessage(atom, types, bank)) {
                    case MessageKind::get:
                        windowWantsBank.store(true, std::memory_order_relaxed);
                        break;
                    case MessageKind::bank:
                        takeBank(bank);
                        break;
                    case MessageKind::other:
                        break;
                    }
                });
}

// A state that is being restored just now counts more: the window is told.
void AudioWrapper::takeBank(ChunkImage& bank) noexcept {
    if (!bankTurn.tryToReplace())
        return;
    effect().applyChunk(bank);
    bankTurn.replaced();
}

void AudioWrapper::takePorts() noexcept {
    const bool all = lookAtAllPorts.exchange(false, std::memory_order_acquire);
    for (VstInt32 index = 0; index < kNumParams; ++index) {
        const auto* const value = port<const float>(portOfParameter(index));
        if (value == nullptr)
            continue;
        auto& last = lastBits[static_cast<std::size_t>(index)];
        const auto bits = std::bit_cast<std::uint32_t>(*value);
        if (bits == last && !all)
            continue;
        last = bits;
        if (const auto change = changeByPort(index, effect().getParameter(index), *value))
            effect().setParameter(index, *change);
    }
}

void AudioWrapper::process(std::uint32_t frames) noexcept {
    float* inputs[] = {port<float>(kPortInLeft), port<float>(kPortInRight)};
    float* outputs[] = {port<float>(kPortOutLeft), port<float>(kPortOutRight)};
    effect().processReplacing(inputs, outputs, narrowed(static_cast<VstIntPtr>(frames)));
}

void AudioWrapper::tellMeters() noexcept {
    if (auto* const width = port<float>(kPortWidthMeter))
        *width = effect().getWidthMeter();
    if (auto* const balance = port<float>(kPortBalanceMeter))
        *balance = effect().getBalanceMeter();
}

void AudioWrapper::tellWindow() noexcept {
    EventWriter notify(port<LV2_Atom_Sequence>(kPortNotify), types.sequence);
    if (!types.known() || !windowWantsBank.exchange(false, std::memory_order_acquire))
        return;
    ChunkImage bank;
    effect().writeChunk(bank);
    // What does not fit into this cycle's buffer may fit into a later one's.
    if (!notify.write(formBankMessage(types, bank)))
        windowWantsBank.store(true, std::memory_order_relaxed);
}

LV2_State_Status AudioWrapper::save(LV2_State_Store_Function store, LV2_State_Handle handle) {
    if (!types.known())
        return LV2_STATE_ERR_NO_FEATURE;
    ChunkImage bank;
    bankTurn.readWhole([&] { effect().writeChunk(bank); });
    return store(handle, types.bankProperty, bank.data(), bank.size(), types.chunk,
                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status AudioWrapper::restore(LV2_State_Retrieve_Function retrieve,
                                       LV2_State_Handle handle) {
    if (!types.known())
        return LV2_STATE_ERR_NO_FEATURE;
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const void* const stored = retrieve(handle, types.bankProperty, &size, &type, &flags);
    if (stored == nullptr) // a state of ports only
        return LV2_STATE_SUCCESS;
    if (type != types.chunk)
        return LV2_STATE_ERR_BAD_TYPE;
    ChunkImage bank;
    if (size != bank.size())
        return LV2_STATE_ERR_UNKNOWN;
    std::memcpy(bank.data(), stored, bank.size());
    bankTurn.waitToReplace();
    const ChunkVerdict verdict = effect().applyChunk(bank);
    bankTurn.replaced();
    if (verdict != ChunkVerdict::accepted)
        return LV2_STATE_ERR_UNKNOWN;
    lookAtAllPorts.store(true, std::memory_order_release);
    windowWantsBank.store(true, std::memory_order_release);
    return LV2_STATE_SUCCESS;
}

} // namespace mirelon::lv2
