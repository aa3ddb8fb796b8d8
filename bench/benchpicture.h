// The picture of the benchmarks.
#pragma once

#include "bench/benchresults.h"

#include <filesystem>

namespace mirelon::bench {

// Bars of one frame's time, ours, peers' and the bounds', as ratios to the plain
// chain. Throws std::runtime_error when the file cannot be written.
void drawPicture(const Results& results, const std::filesystem::path& file);

} // namespace mirelon::bench
