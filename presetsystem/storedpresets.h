// What the user's preferences keep of the preset system: the default bank and
// preset, the compare memories, and the last files used.
#pragma once

#include "platform/preferences.h"
#include "presetsystem/filequestion.h"
#include "presetsystem/presetimages.h"

#include <optional>
#include <string>
#include <string_view>

namespace mirelon {

// The places for one preset.
enum class PresetSlot { defaultPreset, memoryA, memoryB };

// Where the last files were and what they were called; empty texts at first.
struct LastFiles {
    PathBuffer currentDir{}; // ends with a slash
    PathBuffer currentBankName{};
    PathBuffer currentPresetName{};
};

// One store for all instances of all hosts: what is stored or cleared is on disk on
// return. The store's failures are silent. One thread.
class StoredPresets {
  public:
    // An image of zeros when nothing is stored. A shorter image is filled up with
    // zeros, a longer one cut.
    presetfilestruct preset(PresetSlot slot) const;
    bankfilestruct defaultBank() const;

    void storePreset(PresetSlot slot, const presetfilestruct& image);
    void storeDefaultBank(const bankfilestruct& image);
    void clearPreset(PresetSlot slot);
    void clearDefaultBank();
    void clearDefaultMidi(); // of older versions; none is stored any more

    // Nothing is written when there is nothing to remember or nothing new.
    void storeLastFiles(const LastFiles& files);
    // A text that is not stored stays as it is; a longer one is cut.
    void recallLastFiles(LastFiles& files) const;

  private:
    void store(const char* key, std::string_view value);
    void clear(const char* key);
    std::optional<std::string> text(const char* key) const;

    // The folder that the environment names when this object is built.
    Preferences preferences{userPreferencesFolder()};
};

} // namespace mirelon
