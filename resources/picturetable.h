// What the build makes of the drawings: the table behind resources.h.
#pragma once

#include "resources/resources.h"

#include <span>

namespace mirelon {

struct EmbeddedPicture {
    int number;
    PictureSize size;
    int picturesDown;
    std::array<PictureData, pictureScales.size()> renderings;
};

extern const std::span<const EmbeddedPicture> embeddedPictures;

} // namespace mirelon
