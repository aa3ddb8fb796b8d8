// The state chunk: any 692 bytes.
#include "fuzz/input.h"
#include "presetsystem/chunkimage.h"

using namespace mirelon;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    constexpr std::int32_t owner = 0x4D724C6E;
    ChunkImage image{};
    const auto bytes = input.bytes(chunkSize);
    std::ranges::copy(bytes, image.begin());
    const ChunkImage given = image;
    const ChunkVerdict verdict = readChunk(image, owner);
    if (verdict != ChunkVerdict::accepted)
        return 0;
    // Of native order it is as it was given. What is read from it writes the same
    // records again.
    const bool nativeOwner = std::memcmp(&given[4], &owner, sizeof owner) == 0;
    expect(!nativeOwner || image == given);
    PresetBank bank{};
    copyChunkBank(image, bank);
    const auto presetNo = chunkPresetNo(image);
    expect(!presetNo || isPresetIndex(*presetNo));
    ChunkImage again{};
    writeChunk(again, owner, presetNo.value_or(0), bank);
    expect(
        std::equal(again.begin() + chunkHeaderSize, again.end(), image.begin() + chunkHeaderSize));
    expect(readChunk(again, owner) == ChunkVerdict::accepted);
    return 0;
}
