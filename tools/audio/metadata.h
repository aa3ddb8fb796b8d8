// What audio files hold besides their sound.
#pragma once

#include <cstddef>
#include <optional>
#include <sndfile.h>
#include <string>
#include <utility>
#include <vector>

namespace mirelon::tools {

struct Metadata {
    struct Chunk {
        std::string id; // four characters
        std::vector<std::byte> data;
    };

    std::vector<std::pair<int, std::string>> texts; // by libsndfile's kind: title and the like
    std::vector<std::byte> broadcast;               // an SF_BROADCAST_INFO, empty: none
    std::vector<std::byte> cart;                    // an SF_CART_INFO, empty: none
    std::vector<SF_CUE_POINT> cues;
    std::optional<SF_INSTRUMENT> instrument;
    std::vector<int> channelMap; // of a stereo file that says where its channels belong
    std::vector<Chunk> chunks;   // descriptive ones that go over as they are
    // Names of what is there too and that nothing here can carry.
    std::vector<std::string> foreign;
    // The broadcast loudness fields were filled in. They tell of the sound as it
    // was and are left out of `broadcast`.
    bool loudnessLeftOut = false;

    // An upper bound of what it takes in a file.
    std::size_t bytes() const;
};

// All but chunks and foreign.
Metadata readMetadata(SNDFILE* file, const SF_INFO& info);

// These two, of a file that can be sought. `names` are names of chunks and tags that
// are known to be in the file besides those that libsndfile lists.
void addChunks(Metadata& metadata, SNDFILE* file, const std::vector<std::string>& names);

// Before the first frame is written.
void writeMetadata(SNDFILE* file, const Metadata& metadata);

// What of `metadata` would not be in a stereo file of the format, for people. Finds
// it out by writing one in memory.
std::vector<std::string> lostMetadata(const Metadata& metadata, int format, int sampleRate);

} // namespace mirelon::tools
