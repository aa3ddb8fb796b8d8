// Byte images in files that the user has chosen.
#pragma once

#include "presetsystem/filequestion.h"

#include <cstddef>
#include <span>

namespace mirelon {

// Both answer with the operating system's error, 0 for none. User-interface thread.

// A file that cannot be opened, or is shorter, leaves the rest of `image` as it
// is; that it is shorter is no error.
int readImage(const ChosenFile& file, std::span<std::byte> image);
// Replaces the file, or makes a new one. A file that does not hold all of the
// image, for want of space, is removed.
int writeImage(const ChosenFile& file, std::span<const std::byte> image);

} // namespace mirelon
