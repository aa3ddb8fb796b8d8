// The picture of a render: goniometers, figures, level and image over time.
#pragma once

#include "tools/plot/stereohistory.h"

#include <filesystem>
#include <string>

namespace mirelon::tools {

struct PictureText {
    std::string title;
    std::string subtitle;
};

// How many points of each history the picture has room for.
inline constexpr std::size_t levelSlices = 720;
inline constexpr std::size_t goniometerSize = 400;

// Throws CommandError when the file cannot be written.
void drawStereoPicture(const std::filesystem::path& file, const PictureText& text,
                       const StereoSignal& before, const StereoSignal& after, double seconds);

} // namespace mirelon::tools
