// Where the bytes of a written audio file go.
#pragma once

#include "tools/audio/soundhandle.h"
#include "tools/replacedfile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace mirelon::tools {

class AudioOutput {
  public:
    AudioOutput() = default;
    virtual ~AudioOutput() = default;
    AudioOutput(const AudioOutput&) = delete;
    AudioOutput& operator=(const AudioOutput&) = delete;

    // For messages.
    virtual std::string name() const = 0;

    // A handle for writing, once; null on failure, of which
    // libraryMessage(nullptr) tells.
    virtual SoundHandle open(SF_INFO& info) = 0;

    // Whether the header's sizes are going to be right: they are a limit then.
    virtual bool keepsSizes() const { return true; }

    // Called when everything that belongs into the header is there but samples.
    // Throws CommandError.
    virtual void begin(SNDFILE* handle);

    // Called when the handle, which took `frames` frames, has been closed. Throws
    // CommandError when they did not all arrive.
    virtual void finish(std::uint64_t frames) = 0;
};

// A file that takes the place of an existing one when it is complete and its
// header tells of every frame.
class FileOutput : public AudioOutput {
  public:
    // Throws CommandError as ReplacedFile does.
    explicit FileOutput(const std::filesystem::path& target);

    std::string name() const override { return path.string(); }
    SoundHandle open(SF_INFO& info) override;
    void finish(std::uint64_t frames) override;

  private:
    std::filesystem::path path;
    ReplacedFile file;
};

} // namespace mirelon::tools
