// What the benchmarks process.
#pragma once

#include "processor/core/stereocore.h"

#include <string_view>
#include <vector>

namespace mirelon::bench {

enum class Material {
    noise,    // uniform, both channels independent
    mono,     // the same noise in both
    silence,  // zeros, followers at rest
    tail,     // zeros, followers on their way through the flush
    denormals // noise below the smallest normal number
};
inline constexpr Material allMaterial[] = {Material::noise, Material::mono, Material::silence,
                                           Material::tail, Material::denormals};
std::string_view nameOf(Material material);

// Two channels with room for the output beside them, as a host's buffers lie.
template <typename Sample>
struct StereoBuffers {
    StereoBuffers(Material material, int frames);

    std::vector<Sample> leftIn;
    std::vector<Sample> rightIn;
    std::vector<Sample> leftOut;
    std::vector<Sample> rightOut;
};

// Where the followers stand after much of the material; `tail` starts anew with
// each block.
Envelopes followersIn(Material material);

} // namespace mirelon::bench
