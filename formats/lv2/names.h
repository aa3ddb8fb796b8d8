// What the LV2 plug-in, its window and its data files call things. Sessions
// refer to all of it: nothing here ever changes; a new port goes to the end.
#pragma once

#include "processor/core/parameters.h"

#include <array>
#include <cstdint>

namespace mirelon::lv2 {

#define MIRELON_LV2_URI "http://dravik.example/mirelon"

inline constexpr const char* pluginUri = MIRELON_LV2_URI;
inline constexpr const char* windowUri = MIRELON_LV2_URI "#ui";
// The property of the state and of the message: the bank as an atom:Chunk.
inline constexpr const char* bankPropertyUri = MIRELON_LV2_URI "#bank";
// The message classes: the window asks for the bank, either side sends it.
inline constexpr const char* getClassUri = MIRELON_LV2_URI "#Get";
inline constexpr const char* bankClassUri = MIRELON_LV2_URI "#Bank";

#undef MIRELON_LV2_URI

enum PortNumber : std::uint32_t {
    kPortControl,
    kPortNotify,
    kPortInLeft,
    kPortInRight,
    kPortOutLeft,
    kPortOutRight,
    kPortFirstParameter,
    kPortWidthMeter = kPortFirstParameter + kNumParams,
    kPortBalanceMeter,
    kNumPorts
};
static_assert(kPortWidthMeter == 15 && kNumPorts == 17);

inline constexpr std::array<const char*, kNumPorts> portSymbols{
    "control", "notify",   "in_left",  "in_right",    "out_left",     "out_right",
    "width",   "gain",     "balance",  "stability",   "center_pos",   "process",
    "phase",   "invert_l", "invert_r", "width_meter", "balance_meter"};

constexpr bool isParameterPort(std::uint32_t port) noexcept {
    return port >= kPortFirstParameter && port < kPortWidthMeter;
}
// Of a parameter's port, and the other way round.
constexpr int parameterOfPort(std::uint32_t port) noexcept {
    return static_cast<int>(port - kPortFirstParameter);
}
constexpr std::uint32_t portOfParameter(int index) noexcept {
    return kPortFirstParameter + static_cast<std::uint32_t>(index);
}

// How much room the messages want in the hosts' buffers, in bytes.
inline constexpr std::uint32_t messageRoom = 4096;

} // namespace mirelon::lv2
