// A whole audio file in memory.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <vector>

namespace mirelon::tools {

struct Material {
    int rate = 0; // Hz
    std::array<std::vector<float>, 2> channels;

    std::size_t frames() const { return channels[0].size(); }
};

// A single channel comes out on both sides. Warns of a file that is cut short; throws
// CommandError when it cannot be read or is empty.
Material readMaterial(const std::filesystem::path& file);

} // namespace mirelon::tools
