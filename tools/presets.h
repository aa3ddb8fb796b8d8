// The presets of an effect, wherever it keeps them.
#pragma once

#include "hosting/effect.h"

#include <cstddef>
#include <string>
#include <vector>

namespace mirelon::tools {

// Most effects offer their presets as the host's programs. Mirelon shows the
// host one program and keeps its bank in the state chunk, whose current-preset
// word chooses.
class Presets {
  public:
    explicit Presets(hosting::Effect& effect);

    std::size_t size() const noexcept { return list.size(); }
    const std::vector<std::string>& names() const noexcept { return list; }
    std::size_t current() const;
    // Throws CommandError when the effect refuses. `number` is below size().
    void select(std::size_t number);
    // What a user wrote: a number as `info` shows it, or a name. Throws
    // CommandError for neither.
    std::size_t find(const std::string& numberOrName) const;

  private:
    hosting::Effect& effect;
    bool inChunk;
    std::vector<std::string> list;
};

} // namespace mirelon::tools
