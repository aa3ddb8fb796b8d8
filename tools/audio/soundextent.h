// Where an audio file's samples are, and how many its header promises.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mirelon::tools {

struct SoundExtent {
    std::uint64_t present = 0; // bytes of samples in the file
    // Bytes that the header tells of; those that are there when it leaves the
    // length open, as that of a recording which came through a pipe does.
    std::uint64_t promised = 0;
    // Names of the chunks, sound and format included; empty for AU.
    std::vector<std::string> chunks;
};

// Reads the headers of WAV, RF64, W64, AIFF, CAF and AU files; libsndfile takes
// what is there for the whole and says nothing. None for other kinds of files and
// for those without samples. The position of `descriptor` stays.
std::optional<SoundExtent> soundExtent(int descriptor);

} // namespace mirelon::tools
