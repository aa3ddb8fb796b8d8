// The host of one effect inside a plug-in of another format.
#pragma once

#include "processor/mirelon.h"

#include <array>
#include <atomic>

namespace mirelon {

// Builds and owns an effect, answers what it asks, and turns what it tells its
// host into virtual calls. Those come on the thread that entered the effect:
// usually the window's, but a bank that is applied on the audio thread is
// reported there. None comes while the effect is being built or taken down.
//
// A gesture of which no value comes (the effect announces one after every
// preset change) is not passed on: some hosts take its end for a value of 0.
class EffectHost {
  public:
    // Throws std::bad_alloc, or std::runtime_error when there is no effect.
    EffectHost(float sampleRate, VstInt32 blockSize);
    virtual ~EffectHost();
    EffectHost(const EffectHost&) = delete;
    EffectHost& operator=(const EffectHost&) = delete;

    Mirelon& effect() noexcept { return *hosted; }
    const Mirelon& effect() const noexcept { return *hosted; }
    // Tells the effect, which is to be suspended, another rate and block size, and
    // answers with them from then on.
    void setFormat(float sampleRate, VstInt32 blockSize) noexcept;
    // As a host does, through the effect's record.
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr, float opt = 0.0F) noexcept;

    // Whether a gesture on parameter `index` is under way, values or not. Any
    // thread; false for an index outside 0 to 8.
    bool isHeld(VstInt32 index) const noexcept;

  protected:
    // The user has set a parameter, which has the value already.
    virtual void parameterAutomated(VstInt32 /*index*/, float /*value*/) {}
    // Around the values of a gesture; index 0 to 8.
    virtual void gestureBegun(VstInt32 /*index*/) {}
    virtual void gestureEnded(VstInt32 /*index*/) {}
    // The current preset, its name or the bank is another.
    virtual void displayChanged() {}
    // Whether the format's host can be asked for another size of the window, and
    // the asking, in pixels: false when it does not give it.
    virtual bool canResizeWindow() const { return false; }
    virtual bool resizeWindow(int /*width*/, int /*height*/) { return false; }

  private:
    static VstIntPtr callback(AEffect* record, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                              void* ptr, float opt) noexcept;
    VstIntPtr answer(VstInt32 opcode) const noexcept;
    VstIntPtr hear(VstInt32 opcode, VstInt32 index, VstIntPtr value, const void* ptr, float opt);
    void automated(VstInt32 index, float value);
    void begin(VstInt32 index) noexcept;
    void end(VstInt32 index);

    // The host whose effect this thread is building: its record names no host yet.
    static thread_local const EffectHost* building;

    // The effect may announce a gesture inside one of the user's.
    struct Gesture {
        std::atomic<int> depth{0};
        std::atomic<bool> passedOn{false};
    };

    VstIntPtr sampleRate;
    VstIntPtr blockSize;
    Mirelon* hosted = nullptr; // ends with the command to close it
    std::array<Gesture, kNumParams> gestures;
};

} // namespace mirelon
