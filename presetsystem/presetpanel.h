// The strip of controls by which the user handles presets.
#pragma once

#include "presetsystem/presetrecord.h"

#include <optional>
#include <span>

namespace VSTGUI {
class CFrame;
class CTextEdit;
class COptionMenu;
class IControlListener;
} // namespace VSTGUI

namespace mirelon {

// Makes the controls of panellayout.h, and shows in them what it is given. What
// the controls do is the listener's business.
//
// Shown from build() to forget(), on the thread that owns the window; at any
// other time every function does nothing.
class PresetPanel {
  public:
    // Adds the controls to `frame`, which owns them. The menu is still empty.
    void build(VSTGUI::CFrame& frame, VSTGUI::IControlListener* listener);
    // Before the frame goes.
    void forget();

    // All names in the menu; `current` is its entry and the field's text.
    void showBank(const PresetBank& bank, int current);
    // The titles of the menu's first entries; field and current entry stay.
    void showFirstNames(std::span<const PresetName> names);
    // The field's text and the title of the current entry.
    void showCurrentName(const PresetName& name);
    void showInField(const PresetName& name);
    // Makes entry `preset` current; false when there is none.
    bool select(int preset);

    // What the field holds.
    std::optional<PresetName> typedName() const;
    // The name by which entry `preset` goes. `stored` itself if that is what it
    // shows: not every name can be shown byte by byte.
    PresetName nameOf(int preset, const PresetName& stored) const;

  private:
    // Owned by the frame; null while there is none.
    VSTGUI::CTextEdit* nameField = nullptr;
    VSTGUI::COptionMenu* menu = nullptr;
};

} // namespace mirelon
