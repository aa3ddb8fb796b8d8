// Audio files written from front to back.
#pragma once

#include "tools/audio/audiooutput.h"
#include "tools/audio/virtualfile.h"

#include <optional>
#include <vector>

namespace mirelon::tools {

// A pipe, whose header cannot be corrected afterwards: it is held back until the
// library has written a file of the length that this one is going to have, of which
// only the header is kept.
class PipeOutput : public AudioOutput {
  public:
    // `descriptor` stays the caller's. `frames` stereo frames of `format` are going
    // to be written; without a number the header leaves the length open. Throws
    // CommandError when a file of that format needs to be sought or to know.
    PipeOutput(int descriptor, int format, std::optional<std::uint64_t> frames);

    std::string name() const override { return "standard output"; }
    SoundHandle open(SF_INFO& info) override;
    bool keepsSizes() const override { return frames.has_value(); }
    void begin(SNDFILE* handle) override;
    void finish(std::uint64_t frames) override;

  private:
    class Stream : public VirtualFile {
      public:
        explicit Stream(int descriptor_)
            : descriptor(descriptor_) {}

        sf_count_t length() const override;
        // The header ends here. From now on what follows it only counts.
        void rehearse();
        // Sends what was held back. Throws CommandError when nobody takes it.
        void release();
        int failure() const noexcept { return error; } // an errno, 0: none

      protected:
        std::size_t readAt(sf_count_t position, std::span<std::byte> bytes) override;
        std::size_t writeAt(sf_count_t position, std::span<const std::byte> bytes) override;

      private:
        bool send(std::span<const std::byte> bytes);

        int descriptor;
        bool holding = true;
        int error = 0;
        bool rehearsing = false;
        sf_count_t rehearsed = 0; // length of the whole, as far as written
        sf_count_t sent = 0;
        std::vector<std::byte> header;
    };

    int format;
    std::optional<std::uint64_t> frames;
    Stream stream;
};

} // namespace mirelon::tools
