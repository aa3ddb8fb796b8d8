// How long a recording the formats of audio files can hold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace mirelon::tools {

// Stereo frames that a file of the format can hold beside `otherBytes` bytes that
// are no samples; none: as many as one likes. What has no known limit and no
// 64-bit sizes counts as one of 2 GiB.
std::optional<std::uint64_t> mostFrames(int format, std::uint64_t otherBytes = 0);

struct ChosenFormat {
    int format; // libsndfile's
    // An RF64 file that becomes a plain WAV when it has remained small enough.
    bool plainWhenSmall = false;
};

// What to write `frames` stereo frames as: `format`, except that RF64 stands in
// for a WAV that would be too small. Without a known length, a WAV is one that
// can still become RF64. Throws CommandError, which begins with `name`, when the
// format cannot hold them.
ChosenFormat formatForLength(int format, std::optional<std::uint64_t> frames,
                             std::uint64_t otherBytes, const std::string& name);

} // namespace mirelon::tools
