#include "presetsystem/presetrecord.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <utility>

namespace {

// Whole-word access without a lock: the same plain move as without atomics.
std::uint32_t loadWord(const std::uint32_t& word) noexcept {
    return std::atomic_ref(const_cast<std::uint32_t&>(word)).load(std::memory_order_relaxed);
}

void storeWord(std::uint32_t& word, std::uint32_t bits) noexcept {
    std::atomic_ref(word).store(bits, std::memory_order_relaxed);
}

constexpr std::size_t wordCount = PresetRecord::imageSize / 4;
constexpr std::size_t nameWordCount = kPresetNameLen / 4;

} // namespace

void mySwapBytes(void* word) noexcept {
    auto* bytes = static_cast<unsigned char*>(word);
    std::swap(bytes[0], bytes[3]);
    std::swap(bytes[1], bytes[2]);
}

namespace mirelon {

PresetName presetName(const char* text) noexcept {
    PresetName name{};
    std::memcpy(name.data(), text, strnlen(text, kPresetNameLen));
    return name;
}

float decodeValue(const std::byte* bytes) noexcept {
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; ++i)
        bits = bits << 8U | std::to_integer<std::uint32_t>(bytes[i]);
    return std::bit_cast<float>(bits);
}

void encodeValue(float value, std::byte* bytes) noexcept {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    for (unsigned i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::byte>(bits >> (24U - 8U * i));
}

} // namespace mirelon

float PresetRecord::value(int index) const noexcept {
    const std::uint32_t word = loadWord(valueWords[static_cast<std::size_t>(index)]);
    return mirelon::decodeValue(reinterpret_cast<const std::byte*>(&word));
}

void PresetRecord::setValue(int index, float value) noexcept {
    std::uint32_t word = 0;
    mirelon::encodeValue(value, reinterpret_cast<std::byte*>(&word));
    storeWord(valueWords[static_cast<std::size_t>(index)], word);
}

mirelon::PresetName PresetRecord::name() const noexcept {
    std::array<std::uint32_t, nameWordCount> words{};
    for (std::size_t i = 0; i < nameWordCount; ++i)
        words[i] = loadWord(nameWords[i]);
    mirelon::PresetName text{};
    std::memcpy(text.data(), words.data(), kPresetNameLen);
    return text;
}

void PresetRecord::setName(std::string_view text) noexcept {
    std::array<std::uint32_t, nameWordCount> words{};
    const std::string_view kept = text.substr(0, kPresetNameLen);
    if (!kept.empty()) // an empty view may point nowhere
        std::memcpy(words.data(), kept.data(), kept.size());
    for (std::size_t i = 0; i < nameWordCount; ++i)
        storeWord(nameWords[i], words[i]);
}

void PresetRecord::writeTo(std::span<std::byte, imageSize> image) const noexcept {
    for (std::size_t i = 0; i < wordCount; ++i) {
        const std::uint32_t word =
            loadWord(i < nameWordCount ? nameWords[i] : valueWords[i - nameWordCount]);
        std::memcpy(&image[4 * i], &word, 4);
    }
}

void PresetRecord::readFrom(std::span<const std::byte, imageSize> image) noexcept {
    for (std::size_t i = 0; i < wordCount; ++i) {
        std::uint32_t word = 0;
        std::memcpy(&word, &image[4 * i], 4);
        storeWord(i < nameWordCount ? nameWords[i] : valueWords[i - nameWordCount], word);
    }
}
