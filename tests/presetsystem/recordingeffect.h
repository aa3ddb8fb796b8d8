// An effect with nothing but the preset system, and a host that both write
// down what happens.
#pragma once

#include "presetsystem/cpresetsystemeffect.h"

#include <string>
#include <utility>
#include <vector>

namespace mirelon::test {

// Every call the effect made to its host since the last clear().
class HostCallLog {
  public:
    struct Call {
        VstInt32 opcode;
        VstInt32 index;
        bool operator==(const Call&) const = default;
    };
    static inline std::vector<Call> calls;

    static VstIntPtr callback(AEffect* /*effect*/, VstInt32 opcode, VstInt32 index,
                              VstIntPtr /*value*/, void* /*ptr*/, float /*opt*/) {
        calls.push_back({opcode, index});
        return opcode == audioMasterVersion ? 2400 : 0;
    }
};

inline constexpr VstInt32 testId = fourCharacters("TeSt");

class RecordingEffect : public CPresetSystemEffect {
  public:
    RecordingEffect()
        : CPresetSystemEffect(&HostCallLog::callback) {
        setUniqueID(testId);
        for (int preset = 0; preset < kNumPresets; ++preset) {
            record(preset).setName("preset " + std::to_string(preset));
            for (int j = 0; j < kNumPresetParams; ++j)
                record(preset).setValue(j, startValue(preset, j));
        }
        HostCallLog::calls.clear();
    }

    // All different, all exact.
    static float startValue(int preset, int index) {
        return static_cast<float>(preset * kNumPresetParams + index) / 128.0F;
    }

    void processReplacing(float** /*inputs*/, float** /*outputs*/,
                          VstInt32 /*sampleFrames*/) override {}
    void setParameter(VstInt32 index, float value) override {
        sets.emplace_back(index, value);
        if (!isPresetLoading())
            CPresetSystemEffect::setParameter(index, value);
    }

    // What only a processor has.
    float getParameterValue(VstInt32 /*index*/) const override { return 0.0F; }
    float getWidthMeter() const override { return 0.0F; }
    float getBalanceMeter() const override { return 0.0F; }
    void setEditorOpen(bool open) override { editorOpen = open; }
    bool isEditorOpen() const override { return editorOpen; }

    PresetRecord& record(int preset) { return bank()[static_cast<std::size_t>(preset)]; }
    std::string name(int preset) { return record(preset).name().data(); }
    std::string bytes() {
        return {reinterpret_cast<const char*>(bank().data()), sizeof(PresetBank)};
    }

    std::vector<std::pair<VstInt32, float>> sets;
    bool editorOpen = false;
};

} // namespace mirelon::test
