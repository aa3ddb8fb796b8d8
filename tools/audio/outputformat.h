// Which format a rendered file gets.
#pragma once

#include <filesystem>
#include <string>

namespace mirelon::tools {

// libsndfile's format word for `out`. Without an extension, or with one of the
// input's own kind, the input's word as it is. Otherwise the kind of file that
// the extension names, with the input's subtype if that kind takes it, else the
// best that it takes: float, 24 bit, or its own codec. Throws CommandError for
// an extension that names no known kind.
int outputFormat(const std::filesystem::path& out, int inputFormat, int sampleRate);

// Bits of a sample in a subtype that holds plain integers, 0 in any other.
int integerBits(int format);

// "WAV, 24 bit".
std::string formatName(int format);

} // namespace mirelon::tools
