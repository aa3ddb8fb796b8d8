// What an editor asks and tells its effect.
#pragma once

#include "presetsystem/presetrecord.h"

#include <cstdint>

class EditorLink;

// Implemented by the effect, which outlives its editor; EditorLink is the other
// direction. An editor finds it behind the AudioEffect that it is built with and
// calls it on the thread of the host's editor commands and of the user.
class EffectLink {
  public:
    EffectLink() = default;
    EffectLink(const EffectLink&) = delete;
    EffectLink& operator=(const EffectLink&) = delete;

    // Which editor the effect reports to; null: none any more.
    virtual void setEditorLink(EditorLink* editor) = 0;
    // Whether the window is open.
    virtual void setEditorOpen(bool open) = 0;
    virtual bool isEditorOpen() const = 0;
    // Asks the host to make room for a window of this size, in screen pixels; false
    // when it does not. The host may ask for the window's size meanwhile, and may
    // close the window or open it anew.
    virtual bool resizeWindow(std::int32_t width, std::int32_t height) = 0;

    // --- Parameters; any index ---
    virtual float getParameter(std::int32_t index) = 0;            // normalised
    virtual float getParameterValue(std::int32_t index) const = 0; // in its own unit
    // As moved by the user: the host hears of it.
    virtual void setParameterAutomated(std::int32_t index, float value) = 0;
    // Readings of the output, between -0.5 and +0.5.
    virtual float getWidthMeter() const = 0;
    virtual float getBalanceMeter() const = 0;

    // --- Presets ---
    virtual std::int32_t getUniqueID() = 0; // the owner that files name
    virtual std::int32_t getPresetNo() = 0;
    virtual void setPresetNo(long n) = 0; // and applies its values
    // Renames the current preset; the host shows the name anew.
    virtual void setPresetName(const char* name) = 0;
    virtual PresetBank& bank() = 0;

  protected:
    ~EffectLink() = default;
};
