#include "tools/chunkfile.h"

#include "hosting/effectbank.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

namespace mirelon::tools {

namespace {

constexpr std::uintmax_t largestState = 64U << 20U;

// Whether the effect's state is now the one that it was given. Mirelon answers
// "taken" to a chunk of the other byte order and leaves it at that.
bool holds(const hosting::Effect& effect, const std::vector<std::byte>& bytes) {
    const std::vector<std::byte> state = effect.chunk();
    return !hosting::EffectBank::in(state, effect.record().uniqueID) || state == bytes;
}

} // namespace

std::vector<std::byte> stateOf(const hosting::Effect& effect) {
    if (!effect.hasFlag(effFlagsProgramChunks))
        throw CommandError("the plug-in keeps no state chunk");
    std::vector<std::byte> state = effect.chunk();
    if (state.empty())
        throw CommandError("the plug-in gave no state chunk");
    return state;
}

std::vector<std::byte> readChunkFile(const std::filesystem::path& file) {
    std::error_code failure;
    const auto size = std::filesystem::file_size(file, failure);
    std::ifstream stream(file, std::ios::binary);
    if (failure || !stream)
        throw CommandError(file.string() + ": cannot be read (" +
                           (failure ? failure.message() : std::strerror(errno)) + ")");
    if (size > largestState)
        throw CommandError(file.string() + ": too long for a state chunk");
    std::vector<std::byte> bytes(static_cast<std::size_t>(size));
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    if (!stream)
        throw CommandError(file.string() + ": cannot be read to its end");
    return bytes;
}

void loadChunkFile(hosting::Effect& effect, const std::filesystem::path& file) {
    const std::vector<std::byte> bytes = readChunkFile(file);
    if (!effect.hasFlag(effFlagsProgramChunks))
        throw CommandError("the plug-in keeps no state chunk");
    if (effect.setChunk(bytes) < 0 || !holds(effect, bytes))
        throw CommandError(file.string() + ": the plug-in does not take it as its state");
}

} // namespace mirelon::tools
