#include "bench/material.h"

#include <limits>
#include <random>

namespace mirelon::bench {

std::string_view nameOf(Material material) {
    switch (material) {
    case Material::noise:
        return "noise";
    case Material::mono:
        return "mono";
    case Material::silence:
        return "silence";
    case Material::tail:
        return "tail";
    case Material::denormals:
        return "denormals";
    }
    return "";
}

template <typename Sample>
StereoBuffers<Sample>::StereoBuffers(Material material, int frames)
    : leftIn(static_cast<std::size_t>(frames))
    , rightIn(leftIn.size())
    , leftOut(leftIn.size())
    , rightOut(leftIn.size()) {
    if (material == Material::silence || material == Material::tail)
        return;
    std::mt19937 random(1);
    const Sample scale =
        material == Material::denormals ? std::numeric_limits<Sample>::min() : Sample{1};
    const auto next = [&] {
        return (static_cast<Sample>(random()) / Sample{2147483648} - Sample{1}) * scale;
    };
    for (std::size_t i = 0; i < leftIn.size(); ++i) {
        leftIn[i] = next();
        rightIn[i] = material == Material::mono ? leftIn[i] : next();
    }
}

template struct StereoBuffers<float>;
template struct StereoBuffers<double>;

Envelopes followersIn(Material material) {
    switch (material) {
    case Material::noise:
        return {0.66, 0.66, 0.5, 0.5};
    case Material::mono:
        // Where a follower comes to rest above zero when its input falls silent.
        return {1.0, 5e-29, 0.5, 0.5};
    case Material::tail:
        return {1e-17, 2e-17, 1e-18, 3e-18};
    case Material::silence:
    case Material::denormals:
        break;
    }
    return {};
}

} // namespace mirelon::bench
