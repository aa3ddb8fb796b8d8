// The effect: nine parameters, the audio path with its meters, and what the
// host is told about them.
#pragma once

#include "presetsystem/cpresetsystemeffect.h"
#include "processor/core/sharedcoefficients.h"
#include "processor/core/stereocore.h"

#include <array>
#include <atomic>
#include <memory>

// One instance of the plug-in. Parameter changes may come from any thread
// while audio is processed: they are stored value by value, without a lock.
class Mirelon : public CPresetSystemEffect {
  public:
    // Builds the editor, fills the bank, loads the stored defaults and applies
    // preset 0.
    explicit Mirelon(audioMasterCallback audioMaster);
    ~Mirelon() override;

    // Reset meters and followers; parameters stay. After resume and until the
    // first block both meters stand at their upper end.
    void suspend() override;
    void resume() override;

    // Missing buffers are left alone; no frames only refreshes the readings.
    void processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) override;
    void processDoubleReplacing(double** inputs, double** outputs, VstInt32 sampleFrames) override;

    void setParameter(VstInt32 index, float value) override;
    // The normalised value; 0 for an index outside 0 to 8.
    float getParameter(VstInt32 index) override;
    // Texts of unknown indices are left as they are.
    void getParameterLabel(VstInt32 index, char* label) override;
    void getParameterDisplay(VstInt32 index, char* text) override;
    void getParameterName(VstInt32 index, char* text) override;
    float getVu() override;

    bool getParameterProperties(VstInt32 index, VstParameterProperties* properties) override;
    bool getInputProperties(VstInt32 index, VstPinProperties* properties) override;
    bool getOutputProperties(VstInt32 index, VstPinProperties* properties) override;
    bool getEffectName(char* name) override;
    bool getVendorString(char* text) override;
    bool getProductString(char* text) override;
    VstInt32 getVendorVersion() override;
    VstInt32 getPlugCategory() override;

    void initPresets() override;

    // The effect takes no lock.
    void initMutex() {}
    void acquireMutex() {}
    void releaseMutex() {}

    // The parameter's value in its own unit; 0 for an index outside 0 to 8.
    float getParameterValue(VstInt32 index) const override;

    // The readings of the last block, -0.5 to +0.5. Any thread.
    float getWidthMeter() const override { return widthMeter.load(std::memory_order_relaxed); }
    float getBalanceMeter() const override { return balanceMeter.load(std::memory_order_relaxed); }

    // Makes both meters show another instance's readings until the next block.
    // Any thread.
    void showReadings(float width, float balance) noexcept;

    // Kept by the editor: whether its window is open.
    void setEditorOpen(bool open) override {
        editorOpen.store(open ? 1 : 0, std::memory_order_relaxed);
    }
    bool isEditorOpen() const override { return editorOpen.load(std::memory_order_relaxed) != 0; }

  private:
    template <typename Sample>
    void processSamples(Sample** inputs, Sample** outputs, VstInt32 sampleFrames) noexcept;
    void reset(float reading) noexcept;

    std::array<std::atomic<float>, kNumParams> rawValue{};
    mirelon::SharedCoefficients coefficients;
    std::atomic<float> vuValue{0.0F};
    std::atomic<float> widthMeter{0.0F};
    std::atomic<float> balanceMeter{0.0F};

    // A cleared ring kept for processing with memory; no path reads it today.
    static constexpr VstInt32 scratchSize = 16384;
    static constexpr VstInt32 scratchMask = scratchSize - 1;
    std::unique_ptr<float[]> scratchBuffer;

    mirelon::Envelopes envelopes;         // audio thread; others only while suspended
    float followerRate = getSampleRate(); // what the coefficient was computed for
    double followerCoefficient = mirelon::envelopeCoefficient(followerRate);

    std::atomic<VstInt32> editorOpen{0};
    VstInt32 sampleRateInt = 0;
};
