// Byte images in files that the user has chosen.
#pragma once

#include "presetsystem/filequestion.h"

#include <cstddef>
#include <span>

namespace mirelon {

// A file that cannot be opened, or is shorter, leaves the rest of `image` as it
// is. User-interface thread.
void readImage(const ChosenFile& file, std::span<std::byte> image);
// Replaces the file, or makes a new one. Failures are silent; a file that does not
// hold all of the image, for want of space, is removed.
void writeImage(const ChosenFile& file, std::span<const std::byte> image);

} // namespace mirelon
