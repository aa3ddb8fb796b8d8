// What the user's preferences keep of the preset system: the default bank and
// preset, the compare memories, and the last files used.
#pragma once

#include "platform/preferences.h"
#include "presetsystem/filequestion.h"
#include "presetsystem/presetimages.h"

#include <atomic>
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
// return, or the answer is false and nothing has changed. One thread.
class StoredPresets {
  public:
    // An image of zeros when nothing is stored. A shorter image is filled up with
    // zeros, a longer one cut.
    presetfilestruct preset(PresetSlot slot) const;
    bankfilestruct defaultBank() const;

    bool storePreset(PresetSlot slot, const presetfilestruct& image);
    bool storeDefaultBank(const bankfilestruct& image);
    bool clearPreset(PresetSlot slot);
    bool clearDefaultBank();
    bool clearDefaultMidi(); // of older versions; none is stored any more
    // How often an image has been stored or cleared in this process. Any thread.
    static unsigned storings() noexcept { return count.load(std::memory_order_acquire); }

    // Nothing is written when there is nothing to remember or nothing new.
    void storeLastFiles(const LastFiles& files);
    // A text that is not stored stays as it is; a longer one is cut.
    void recallLastFiles(LastFiles& files) const;

  private:
    bool store(const char* key, std::string_view value);
    bool clear(const char* key);
    bool synchronise();
    std::optional<std::string> text(const char* key) const;

    static inline std::atomic<unsigned> count{0};

    // The folder that the environment names when this object is built.
    Preferences preferences{userPreferencesFolder()};
};

} // namespace mirelon
