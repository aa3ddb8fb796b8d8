// How type is set in pictures that are compared with references.
#pragma once

#include <filesystem>

namespace mirelon::test {

// Writes settings for the font library into `folder`, for FONTCONFIG_FILE: whatever this
// machine's user prefers and whichever fonts it has, type is set as in the references.
// Returns the file.
std::filesystem::path writeFontSettings(const std::filesystem::path& folder);

} // namespace mirelon::test
