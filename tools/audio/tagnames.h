// What FLAC and Ogg files are tagged with.
#pragma once

#include <string>
#include <vector>

namespace mirelon::tools {

// Names of the tags (REPLAYGAIN_TRACK_GAIN) and blocks (pictures, cue sheets) in a
// FLAC or Ogg file that libsndfile does not hand over; empty for other files. The
// position of `descriptor` stays.
std::vector<std::string> unreadTags(int descriptor);

} // namespace mirelon::tools
