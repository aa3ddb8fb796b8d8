#include "presetsystem/storedpresets.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>

namespace mirelon {

namespace {

constexpr const char* defaultBankKey = "DefaultBank";
constexpr const char* defaultMidiKey = "DefaultMidi";

constexpr const char* keyOf(PresetSlot slot) {
    switch (slot) {
    case PresetSlot::defaultPreset:
        return "DefaultPreset";
    case PresetSlot::memoryA:
        return "MemoAPreset";
    case PresetSlot::memoryB:
        return "MemoBPreset";
    }
    return "";
}

struct LastFilesText {
    const char* key;
    PathBuffer LastFiles::*buffer;
};
constexpr std::array<LastFilesText, 3> lastFilesTexts{{
    {"CurrDir", &LastFiles::currentDir},
    {"CurrBank", &LastFiles::currentBankName},
    {"CurrPreset", &LastFiles::currentPresetName},
}};

std::string_view bytesOf(const auto& image) {
    return {reinterpret_cast<const char*>(image.bytes.data()), image.bytes.size()};
}

template <typename Image>
Image imageOf(const std::optional<std::string>& value) {
    Image image;
    if (value)
        std::memcpy(image.bytes.data(), value->data(), std::min(value->size(), image.bytes.size()));
    return image;
}

} // namespace

bool StoredPresets::store(const char* key, std::string_view value) {
    preferences.set(key, value);
    return synchronise();
}

bool StoredPresets::clear(const char* key) {
    preferences.remove(key);
    return synchronise();
}

bool StoredPresets::synchronise() {
    const bool stored = preferences.synchronise();
    count.fetch_add(1, std::memory_order_release);
    return stored;
}

presetfilestruct StoredPresets::preset(PresetSlot slot) const {
    return imageOf<presetfilestruct>(preferences.get(keyOf(slot)));
}

bankfilestruct StoredPresets::defaultBank() const {
    return imageOf<bankfilestruct>(preferences.get(defaultBankKey));
}

bool StoredPresets::storePreset(PresetSlot slot, const presetfilestruct& image) {
    return store(keyOf(slot), bytesOf(image));
}

bool StoredPresets::storeDefaultBank(const bankfilestruct& image) {
    return store(defaultBankKey, bytesOf(image));
}

bool StoredPresets::clearPreset(PresetSlot slot) {
    return clear(keyOf(slot));
}

bool StoredPresets::clearDefaultBank() {
    return clear(defaultBankKey);
}

bool StoredPresets::clearDefaultMidi() {
    return clear(defaultMidiKey);
}

std::optional<std::string> StoredPresets::text(const char* key) const {
    std::optional<std::string> stored = preferences.get(key);
    if (stored)
        stored->resize(std::min(std::strlen(stored->c_str()), std::tuple_size_v<PathBuffer> - 1));
    return stored;
}

// Hosts build and drop instances while they scan, so an instance that has used
// no file writes nothing.
void StoredPresets::storeLastFiles(const LastFiles& files) {
    const auto isEmpty = [&](const LastFilesText& last) {
        return (files.*last.buffer).front() == '\0';
    };
    const auto isStored = [&](const LastFilesText& last) {
        return text(last.key).value_or(std::string()) == (files.*last.buffer).data();
    };
    if (std::ranges::all_of(lastFilesTexts, isEmpty) ||
        std::ranges::all_of(lastFilesTexts, isStored))
        return;
    for (const LastFilesText& last : lastFilesTexts)
        preferences.set(last.key, (files.*last.buffer).data());
    preferences.synchronise();
}

void StoredPresets::recallLastFiles(LastFiles& files) const {
    for (const LastFilesText& last : lastFilesTexts)
        if (const auto stored = text(last.key))
            std::memcpy((files.*last.buffer).data(), stored->c_str(), stored->size() + 1);
}

} // namespace mirelon
