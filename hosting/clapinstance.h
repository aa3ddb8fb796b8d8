// One instance of a CLAP plug-in, as its host holds it.
#pragma once

#include "hosting/clapevents.h"
#include "hosting/claphost.h"
#include "hosting/claplibrary.h"

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
// it. `library` and `host` must outlive it. Of what the plug-in lacks, the answer is
// none, zero or false. Numbers go to the plug-in as they are, valid or not.
class ClapInstance {
  public:
    // Throws PluginError when the library makes no such plug-in, when it cannot be
    // initialised and when it has several audio ports in a direction.
    ClapInstance(const ClapLibrary& library, ClapHost& host, const std::string& id);
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

    // Blocks of 1 to `mostFrames` frames. Active from activate() to deactivate(), and
    // processing unless that is stopped in between. What would only repeat the state
    // that it is in is not passed on; starting and resetting are for an active one.
    bool activate(double rate, std::uint32_t mostFrames);
    void deactivate();
    bool startProcessing();
    void stopProcessing();
    void reset();

    // The channels of the one port that it has in each direction; 0 without one.
    std::uint32_t inputChannels() const noexcept { return inputs; }
    std::uint32_t outputChannels() const noexcept { return outputs; }
    // Whether it takes audio in double precision.
    bool takesDoubles() const noexcept { return doubles; }

    // One cycle; Sample is float or double. Without events the plug-in is handed null
    // lists, which not every one bears.
    template <typename Sample>
    clap_process_status process(Sample* const* from, Sample* const* to, std::uint32_t frames,
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
    bool save(const clap_ostream& to) const;
    bool load(const clap_istream& from);

    // What a host's main loop does for it: due timers and the callback that it has
    // asked for.
    void serve();

  private:
    void readPorts();

    ClapHost& host;
    const clap_plugin* made;
    const clap_plugin_params* params = nullptr;
    const clap_plugin_state* state = nullptr;
    const clap_plugin_gui* gui = nullptr;
    const clap_plugin_timer_support* timers = nullptr;
    std::uint32_t inputs = 0;
    std::uint32_t outputs = 0;
    bool doubles = false;
    std::int64_t played = 0; // frames since the activation
    bool active = false;
    bool processing = false;
};

} // namespace mirelon::hosting
