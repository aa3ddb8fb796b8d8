// An instance of the test plug-in, and the parameters that it has.
#pragma once

#include "tests/validator/defects.h"
#include "tests/validator/transcript.h"

#include <array>
#include <clap/plugin.h>
#include <cstdint>
#include <thread>
#include <vector>

namespace mirelon::test::brokenclaps {

constexpr std::uint32_t parameterCount = 3;
enum Place : std::uint32_t { gain, mode, tone }; // the last two change nothing
constexpr std::array<clap_id, parameterCount> identifiers{10, 20, 30};
using Values = std::array<double, parameterCount>;
constexpr Values lowest{0.0, 0.0, -12.0};
constexpr Values highest{2.0, 3.0, 12.0};
constexpr Values initial{1.0, 0.0, 0.0};

// What instances have in common, and should not.
inline Values sharedValues = initial;
inline int instances = 0;

// An instance.
struct Plugin {
    explicit Plugin(const clap_host* host);

    double& at(std::uint32_t place) {
        const bool shared =
            hasDefect("shared-values") || (hasDefect("shared-mode") && place == mode);
        return (shared ? sharedValues : values).at(place);
    }

    clap_plugin record;
    const clap_host* host;
    int number = instances++;
    Values values = initial;
    std::array<float, 2> memory{};
    double rate = 0.0;
    bool active = false;
    bool processing = false;
    int starts = 0;
    std::uint32_t mostFrames = 0;
    std::thread::id maker = std::this_thread::get_id();
};

inline Transcript transcript;

// All that there are.
inline std::vector<Plugin*> living;

inline Plugin& of(const clap_plugin* plugin) {
    return *static_cast<Plugin*>(plugin->plugin_data);
}

} // namespace mirelon::test::brokenclaps
