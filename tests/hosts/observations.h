// What the observing plug-in has written down.
#pragma once

#include "shell/vst24.h"
#include "tests/hosts/program.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace mirelon::test {

struct Observation {
    enum class Kind {
        asks,  // the host, through the dispatcher: opcode, index, value, result
        tells, // the plug-in, through the host's callback: opcode, index, value, opt
        sets,  // the host sets parameter `index` to `opt`
        plays, // the host has `value` frames processed in single precision
        playsDouble
    };
    Kind kind{};
    std::string thread; // "main" or a number
    VstInt32 opcode = 0;
    VstInt32 index = 0;
    VstIntPtr value = 0;
    float opt = 0.0F;
    VstIntPtr result = 0;
    std::string extra; // of effEditGetRect: WIDTHxHEIGHT

    bool is(Kind wanted, VstInt32 wantedOpcode) const {
        return kind == wanted && opcode == wantedOpcode;
    }
};
using Observations = std::vector<Observation>;

// Everything up to now; a line that is still being written is left out.
Observations observationsIn(const std::filesystem::path& file);

// The observing plug-in's file.
std::filesystem::path observer();

// What it reads from its environment to stand before the built plug-in.
Environment observing(const std::filesystem::path& file);

} // namespace mirelon::test
