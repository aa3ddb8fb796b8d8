// The capability texts of the interface: what a plug-in may ask of a host, and
// what a host may ask of a plug-in.
#pragma once

#include <array>
#include <string_view>

// To be put to the host with AudioEffectX::canHostDo.
inline constexpr std::array<std::string_view, 14> kHostCapabilities{
    "sendVstEvents",
    "sendVstMidiEvent",
    "sendVstTimeInfo",
    "receiveVstEvents",
    "receiveVstMidiEvent",
    "reportConnectionChanges",
    "acceptIOChanges",
    "sizeWindow",
    "offline",
    "openFileSelector",
    "closeFileSelector",
    "startStopProcess",
    "shellCategory",
    "sendVstMidiEventFlagIsRealtime",
};

// What hosts put to AudioEffectX::canDo; this plug-in claims none of them.
inline constexpr std::array<std::string_view, 8> kPlugInCapabilities{
    "sendVstEvents",      "sendVstMidiEvent", "receiveVstEvents", "receiveVstMidiEvent",
    "receiveVstTimeInfo", "offline",          "midiProgramNames", "bypass",
};
