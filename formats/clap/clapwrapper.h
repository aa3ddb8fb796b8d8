// The CLAP plug-in without its window: an effect, the host's events in and what
// the user does out.
#pragma once

#include "formats/clap/changering.h"
#include "formats/clap/hostlink.h"
#include "formats/clap/parameterevents.h"
#include "formats/effecthost.h"

#include <atomic>
#include <clap/events.h>
#include <clap/process.h>
#include <clap/stream.h>
#include <cstdint>

namespace mirelon::clap {

// The effect is built as every host builds it, with the stored defaults.
//
// process() on the audio thread, flush() there or, while nothing plays, on the
// main thread; everything else on the main thread, where the window is. What the
// user does reaches the effect at once and the host in the next of those two; of
// another preset, name or bank the host is told on the main thread instead.
// process() and flush() neither wait nor allocate.
class ClapWrapper : public EffectHost {
  public:
    // Throws as EffectHost does. `host` must outlive it.
    explicit ClapWrapper(const HostLink& host);
    ~ClapWrapper() override;

    // A second activation replaces the first. False for a rate or a block that is
    // no number above 0.
    bool activate(double rate, std::uint32_t mostFrames) noexcept;
    void deactivate() noexcept;
    void startProcessing() noexcept;
    void stopProcessing() noexcept;
    // Meters and followers start over. The audio thread.
    void reset() noexcept;

    // Parameters change exactly at their events' times. An event that comes behind
    // a later one takes effect where that has, one beyond the cycle at its end.
    // Without whole buffers of one sample size nothing is written, but the events
    // count all the same.
    clap_process_status process(const clap_process& cycle) noexcept;
    // The events without any audio.
    void flush(const clap_input_events* in, const clap_output_events* out) noexcept;

    // The bank, 692 bytes. False when the host's stream fails.
    bool save(const clap_ostream& stream);
    // Changes nothing and answers false when the stream holds anything else.
    bool load(const clap_istream& stream);

    // Passes on what waits for the main thread.
    void tellHost() noexcept;

  private:
    void parameterAutomated(VstInt32 index, float value) override;
    void gestureBegun(VstInt32 index) override;
    void gestureEnded(VstInt32 index) override;
    void displayChanged() override;
    bool canResizeWindow() const override { return host.canResizeWindow(); }
    bool resizeWindow(int width, int height) override;

    template <typename Sample>
    void processCut(Sample* const* inputs, Sample* const* outputs,
                    const clap_process& cycle) noexcept;
    void apply(const ParameterEvent& event) noexcept;
    void tellChanges(const clap_output_events* out) noexcept;

    const HostLink& host;
    ChangeRing changes;
    std::atomic<bool> loading{false};
    std::atomic<bool> valuesChanged{false}; // all at once
    std::atomic<bool> stateChanged{false};
};

} // namespace mirelon::clap
