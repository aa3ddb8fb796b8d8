// The editor's side of the preferences: default bank and preset, the compare
// memories A and B, and the last directory and file names used.
#include "presetsystem/cpresetsystemeditor.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

constexpr const char* dirKey = "CurrDir";
constexpr const char* bankNameKey = "CurrBank";
constexpr const char* presetNameKey = "CurrPreset";
constexpr const char* defaultBankKey = "DefaultBank";
constexpr const char* defaultPresetKey = "DefaultPreset";
constexpr const char* memoryAKey = "MemoAPreset";
constexpr const char* memoryBKey = "MemoBPreset";
constexpr const char* defaultMidiKey = "DefaultMidi";

std::string_view bytesOf(const auto& image) {
    return {reinterpret_cast<const char*>(image.bytes.data()), image.bytes.size()};
}

// A shorter value leaves the rest of the image zero, a longer one is cut.
void fill(auto& image, const std::optional<std::string>& value) {
    if (value)
        std::memcpy(image.bytes.data(), value->data(), std::min(value->size(), image.bytes.size()));
}

} // namespace

void CPresetSystemEditor::storePreset(const char* key) {
    presetfilestruct image;
    PresetToBuffer(&image);
    preferences.set(key, bytesOf(image));
    preferences.synchronise();
}

void CPresetSystemEditor::recallPreset(const char* key) {
    presetfilestruct image;
    fill(image, preferences.get(key));
    BufferToPreset(&image, false);
}

void CPresetSystemEditor::removePreference(const char* key) {
    preferences.remove(key);
    preferences.synchronise();
}

void CPresetSystemEditor::saveDefaultBank() {
    bankfilestruct image;
    BankToBuffer(&image);
    preferences.set(defaultBankKey, bytesOf(image));
    preferences.synchronise();
}

void CPresetSystemEditor::loadDefaultBank() {
    bankfilestruct image;
    fill(image, preferences.get(defaultBankKey));
    BufferToBank(&image, false);
}

void CPresetSystemEditor::resetDefaultBank() {
    removePreference(defaultBankKey);
}

void CPresetSystemEditor::saveDefaultPreset() {
    storePreset(defaultPresetKey);
}

void CPresetSystemEditor::loadDefaultPreset() {
    recallPreset(defaultPresetKey);
}

void CPresetSystemEditor::resetDefaultPreset() {
    removePreference(defaultPresetKey);
}

void CPresetSystemEditor::storeA() {
    storePreset(memoryAKey);
}

void CPresetSystemEditor::storeB() {
    storePreset(memoryBKey);
}

void CPresetSystemEditor::recallA() {
    recallPreset(memoryAKey);
}

void CPresetSystemEditor::recallB() {
    recallPreset(memoryBKey);
}

void CPresetSystemEditor::saveDefaultMidi() {}
void CPresetSystemEditor::loadDefaultMidi() {}

void CPresetSystemEditor::resetDefaultMidi() {
    removePreference(defaultMidiKey);
}

std::string CPresetSystemEditor::storedText(const char* key) const {
    std::string text = preferences.get(key).value_or(std::string());
    text.resize(std::min(std::strlen(text.c_str()), std::tuple_size_v<PathBuffer> - 1));
    return text;
}

// Hosts build and drop instances while they scan: nothing is written unless
// there is something new to remember.
void CPresetSystemEditor::storePathsAndFilenames() {
    const std::pair<const char*, const PathBuffer*> texts[] = {{dirKey, &currentDir},
                                                               {bankNameKey, &currentBankName},
                                                               {presetNameKey, &currentPresetName}};
    if (std::ranges::all_of(texts, [](const auto& text) { return text.second->front() == '\0'; }))
        return;
    if (std::ranges::all_of(texts, [this](const auto& text) {
            return storedText(text.first) == text.second->data();
        }))
        return;
    for (const auto& [key, text] : texts)
        preferences.set(key, text->data());
    preferences.synchronise();
}

void CPresetSystemEditor::recallPathsAndFilenames() {
    const std::pair<const char*, PathBuffer*> texts[] = {{dirKey, &currentDir},
                                                         {bankNameKey, &currentBankName},
                                                         {presetNameKey, &currentPresetName}};
    for (const auto& [key, text] : texts)
        if (preferences.get(key)) {
            const std::string stored = storedText(key);
            std::memcpy(text->data(), stored.c_str(), stored.size() + 1);
        }
}

void CPresetSystemEditor::loadDefaults() {
    loadDefaultBank();
    loadDefaultPreset();
    loadDefaultMidi();
    recallPathsAndFilenames();
}
