#include "tools/audio/audiooutput.h"

#include "tools/commanderror.h"

namespace mirelon::tools {

void AudioOutput::begin(SNDFILE* /*handle*/) {}

FileOutput::FileOutput(const std::filesystem::path& target)
    : path(target)
    , file(target) {}

SoundHandle FileOutput::open(SF_INFO& info) {
    return SoundHandle(sf_open_fd(file.descriptor(), SFM_WRITE, &info, SF_FALSE));
}

void FileOutput::finish(std::uint64_t frames) {
    // The length of an MPEG file is an estimate.
    SF_INFO info{};
    const SoundHandle written(sf_open(file.temporary().c_str(), SFM_READ, &info));
    if (frames > 0 && (!written || ((info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_MPEG &&
                                    static_cast<std::uint64_t>(info.frames) < frames)))
        throw CommandError(path.string() + ": cannot be written (only " +
                           std::to_string(info.frames) + " of " + std::to_string(frames) +
                           " frames can be read back)");
    file.commit();
}

} // namespace mirelon::tools
