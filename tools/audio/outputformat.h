// Which format a rendered file gets.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace mirelon::tools {

// What a user asks for; empty is what the names of the files say.
struct FormatRequest {
    std::string kind; // one of formatNames()
    std::string bits; // one of bitNames
};
constexpr std::array<const char*, 6> bitNames{"8", "16", "24", "32", "float", "double"};

// The known kinds, which are extensions at the same time.
std::vector<std::string> formatNames();

// libsndfile's format word for `out`. Without an extension, or with one of the
// input's own kind, the input's word as it is. Otherwise the kind of file that
// the extension names, with the input's subtype if that kind takes it, else the
// best that it takes: float, 24 bit, or its own codec. A request goes before all
// that. Throws CommandError for an extension or a request that names no known
// kind and for bits that the kind does not take.
int outputFormat(const std::filesystem::path& out, int inputFormat, int sampleRate,
                 const FormatRequest& request = {});

// Bits of a sample in a subtype that holds plain integers, 0 in any other.
int integerBits(int format);

// Bytes that a sample takes in a file, 0 where a codec packs them.
int bytesPerSample(int format);

// "WAV, 24 bit".
std::string formatName(int format);

} // namespace mirelon::tools
