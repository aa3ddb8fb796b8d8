// PNG files.
#pragma once

#include "hosting/picture.h"

#include <cairo.h>
#include <filesystem>

namespace mirelon::tools {

// An existing file is replaced only by a complete one. Throw CommandError.
void writePng(cairo_surface_t* surface, const std::filesystem::path& file);
void writePng(const hosting::Picture& picture, const std::filesystem::path& file);

} // namespace mirelon::tools
