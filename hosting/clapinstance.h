// One instance of a CLAP plug-in, as its host holds it.
#pragma once

#include "hosting/clapevents.h"
#include "hosting/claphost.h"
#include "hosting/clapmodule.h"

#include <clap/ext/audio-ports.h>
#include <clap/ext/gui.h>
#include <clap/plugin.h>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::hosting {

// An initialised instance; the destructor deactivates it if need be and destroys
// it. `module` and `host` must outlive it. Of what the plug-in lacks, the answer is
// none, zero or false. Numbers go to the plug-in as they are, valid or not.
class ClapInstance {
  public:
    // Throws PluginError when the module makes no such plug-in or it cannot be
    // initialised.
    ClapInstance(const ClapModule& module, ClapHost& host, const std::string& id);
    ~ClapInstance();
    ClapInstance(const ClapInstance&) = delete;
    ClapInstance& operator=(const ClapInstance&) = delete;

    const clap_plugin& plugin() const noexcept { return *made; }
    // The plug-in's functions of an extension; null when it has none.
    template <typename Extension>
    const Extension* extension(const char* id) const noexcept {
        return static_cast<const Extension*>(made->get_extension(made, id));
    }
    const clap_plugin_params* parameters() const noexcept { return params; }
    const clap_plugin_gui* window() const noexcept { return gui; }

    // Blocks of 1 to `mostFrames` frames. Active and processing from activate() to
    // deactivate().
    bool activate(double rate, std::uint32_t mostFrames);
    void deactivate();

    // One cycle of a stereo plug-in; Sample is float or double. Without events it is
    // handed null lists, which not every plug-in bears.
    template <typename Sample>
    clap_process_status process(Sample* const* inputs, Sample* const* outputs, std::uint32_t frames,
                                const clap_input_events* in = nullptr,
                                const clap_output_events* out = nullptr);
    void flush(const clap_input_events* in, const clap_output_events* out);

    std::uint32_t parameterCount() const;
    std::optional<clap_param_info> parameterInfo(std::uint32_t index) const;
    std::optional<double> value(clap_id parameter) const;
    std::optional<std::string> text(clap_id parameter, double value) const;
    std::optional<double> valueOf(clap_id parameter, const std::string& text) const;

    // The state, in parts of at most so many bytes; nothing when there is none.
    std::optional<std::vector<std::byte>> save(std::size_t atOnce = SIZE_MAX) const;
    bool load(std::span<const std::byte> state, std::size_t atOnce = SIZE_MAX);

    // What a host's main loop does for it: due timers and the callback that it has
    // asked for.
    void serve();

  private:
    clap_process_status run(const clap_audio_buffer& in, clap_audio_buffer out,
                            std::uint32_t frames, const clap_input_events* inEvents,
                            const clap_output_events* outEvents);

    ClapHost& host;
    const clap_plugin* made;
    const clap_plugin_params* params = nullptr;
    const clap_plugin_state* state = nullptr;
    const clap_plugin_gui* gui = nullptr;
    const clap_plugin_timer_support* timers = nullptr;
    std::int64_t played = 0; // frames since the activation
    bool active = false;
};

} // namespace mirelon::hosting
