// An effect as the window sees it, that keeps what it is told.
#pragma once

#include "presetsystem/effectlink.h"

#include <array>

namespace mirelon::test {

struct StandInEffect final : EffectLink {
    void setEditorLink(EditorLink* /*editor*/) override {}
    void setEditorOpen(bool /*open*/) override {}
    bool isEditorOpen() const override { return true; }
    bool resizeWindow(std::int32_t /*width*/, std::int32_t /*height*/) override { return false; }
    float getParameter(std::int32_t index) override {
        return normalised.at(static_cast<std::size_t>(index));
    }
    float getParameterValue(std::int32_t index) const override {
        return inOwnUnit.at(static_cast<std::size_t>(index));
    }
    void setParameterAutomated(std::int32_t /*index*/, float /*value*/) override {}
    float getWidthMeter() const override { return width; }
    float getBalanceMeter() const override { return balance; }
    std::int32_t getUniqueID() override { return 0; }
    std::int32_t getPresetNo() override { return 0; }
    void setPresetNo(long /*n*/) override {}
    void setPresetName(const char* /*name*/) override {}
    PresetBank& bank() override { return presets; }

    std::array<float, kNumPresetParams> normalised{};
    std::array<float, kNumPresetParams> inOwnUnit{};
    float width = 0.0F;
    float balance = 0.0F;
    PresetBank presets{};
};

} // namespace mirelon::test
