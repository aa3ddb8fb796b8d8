// What sound libraries print by themselves.
#pragma once

namespace mirelon::tools {

// The libraries behind RtAudio print dozens of lines where there is no sound card.
// From now on they keep them to themselves; what matters is whether a device opens.
// Any thread, any number of times.
void silenceSoundLibraries();

} // namespace mirelon::tools
