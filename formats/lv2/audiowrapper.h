// The LV2 plug-in: an effect without a window, run by its ports.
#pragma once

#include "formats/effecthost.h"
#include "formats/lv2/bankmessage.h"
#include "formats/lv2/bankturn.h"
#include "formats/lv2/names.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <optional>

namespace mirelon::lv2 {

// Ports and bank are two truths, and hosts keep both:
// - the input ports are read and never written;
// - a port counts when its bits are others than in the cycle before;
// - after a restored state all ports count once more;
// - a bank that the window has sent stands until a port changes.
//
// run() on the audio thread; everything else on the host's other threads, save
// and restore beside run() as well. Nothing in run() waits or allocates.
class AudioWrapper : private EffectHost {
  public:
    // Every feature is optional; without urid:map there is no state and there
    // are no messages. Throws as EffectHost does.
    AudioWrapper(double sampleRate, const LV2_Feature* const* features);

    // Null and unknown ports are left out.
    void connectPort(std::uint32_t port, void* data) noexcept;
    void activate() noexcept;
    void run(std::uint32_t frames) noexcept;
    void deactivate() noexcept;

    LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle handle);
    // A state without a bank changes nothing, nor does one that is not ours.
    LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

  private:
    void takeMessages() noexcept;
    void takeBank(ChunkImage& bank) noexcept;
    void takePorts() noexcept;
    void process(std::uint32_t frames) noexcept;
    void tellMeters() noexcept;
    void tellWindow() noexcept;

    template <typename Data>
    Data* port(std::uint32_t number) const noexcept {
        return static_cast<Data*>(ports[number]);
    }

    MessageTypes types;
    std::array<void*, kNumPorts> ports{};
    // The bits of the parameters' ports in the last cycle; of the first there is
    // none.
    std::array<std::optional<std::uint32_t>, kNumParams> lastBits{};
    BankTurn bankTurn;
    std::atomic<bool> lookAtAllPorts{false};
    std::atomic<bool> windowWantsBank{false};
};

} // namespace mirelon::lv2
