// An open file of libsndfile's.
#pragma once

#include <memory>
#include <sndfile.h>
#include <string>

namespace mirelon::tools {

struct CloseSoundFile {
    void operator()(SNDFILE* file) const noexcept { sf_close(file); }
};
using SoundHandle = std::unique_ptr<SNDFILE, CloseSoundFile>;

// What went wrong last with `file`, or, for null, with opening one; without a
// full stop.
inline std::string libraryMessage(SNDFILE* file) {
    std::string text = sf_strerror(file);
    while (!text.empty() && (text.back() == '.' || text.back() == '\n'))
        text.pop_back();
    return text;
}

} // namespace mirelon::tools
