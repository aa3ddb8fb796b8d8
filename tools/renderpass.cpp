#include "tools/renderpass.h"

#include "tools/audio/channelbuffers.h"
#include "tools/chunkfile.h"
#include "tools/commanderror.h"
#include "tools/imageloading.h"

#include <algorithm>
#include <utility>

namespace mirelon::tools {

namespace {

// Resumed for as long as it lives, whatever ends the run.
class Running {
  public:
    explicit Running(hosting::Effect& effect_)
        : effect(effect_) {
        effect.resume();
    }
    ~Running() { effect.suspend(); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    hosting::Effect& effect;
};

} // namespace

RenderPass::RenderPass(const RenderOptions& options)
    : reader(options.input)
    , plugin(options.plugin)
    , blockSize(static_cast<std::size_t>(options.block))
    , useDouble(options.useDouble)
    , strict(options.strict) {
    refuseShortfall();
    if (!options.ramps.empty() && !reader.lengthKnown() && reader.frames() == 0)
        throw CommandError(options.input + ": how long it is becomes known at its end only, "
                                           "--automate needs to know before");
    const std::string name = plugin.module->name();
    const AEffect& record = plugin.effect.record();
    if (record.numInputs < 2 || record.numOutputs < 2)
        throw CommandError(name + ": has " + std::to_string(record.numInputs) + " inputs and " +
                           std::to_string(record.numOutputs) + " outputs, two of each are needed");
    if (useDouble && !plugin.effect.hasFlag(effFlagsCanDoubleReplacing))
        throw CommandError(name + ": does not process in double precision");
    plugin.announce(reader.sampleRate(), options.block);
    plugin.effect.setSampleRate(static_cast<float>(reader.sampleRate()));
    plugin.effect.setBlockSize(options.block);
    plugin.effect.setPrecision(useDouble ? kVstProcessPrecision64 : kVstProcessPrecision32);
    applyState(options);
}

void RenderPass::applyState(const RenderOptions& options) {
    const auto tell = [this](const std::string& what) {
        told.append(told.empty() ? "" : ", ").append(what);
    };
    if (!options.chunk.empty()) {
        loadChunkFile(plugin.effect, options.chunk);
        tell("state of " + options.chunk);
    }
    if (!options.bankFile.empty()) {
        loadBankFile(plugin.effect, options.bankFile);
        tell("bank of " + options.bankFile);
    }
    if (options.settings.preset)
        tell(choosePreset(plugin.effect, *options.settings.preset));
    if (!options.presetFile.empty()) {
        loadPresetFile(plugin.effect, options.presetFile);
        tell("preset of " + options.presetFile);
    }
    const Remark remark = [this](const std::string& line) { remarked.push_back(line); };
    for (const TypedSetting& setting : options.settings.settings)
        tell(applySetting(plugin.effect, setting, remark));
    for (const TypedSetting& typed : options.ramps) {
        ParameterRamp ramp = parseRamp(plugin.effect, typed);
        const VstInt32 index = ramp.first.index;
        for (const ParameterSetting* const end : {&ramp.first, &ramp.last}) {
            if (!end->remark.empty())
                remark(end->remark);
        }
        plugin.effect.setParameter(index, ramp.first.value);
        const std::string first = plugin.effect.parameterDisplay(index);
        plugin.effect.setParameter(index, ramp.last.value);
        tell(parameterText(plugin.effect, index) + " from " + first);
        plugin.effect.setParameter(index, ramp.first.value);
        ramps.push_back(std::move(ramp));
    }
}

void RenderPass::moveRamps(std::int64_t blockStart) {
    const auto length = static_cast<std::int64_t>(blockSize);
    const std::int64_t lastStart =
        (std::max<std::int64_t>(reader.frames(), 1) - 1) / length * length;
    const double part =
        lastStart == 0
            ? 0.0
            : std::min(1.0, static_cast<double>(blockStart) / static_cast<double>(lastStart));
    for (const ParameterRamp& ramp : ramps) {
        const double first = ramp.first.value;
        const double value = first + part * (ramp.last.value - first);
        plugin.effect.setParameter(ramp.first.index, static_cast<float>(value));
    }
}

void RenderPass::refuseShortfall() const {
    if (strict && reader.missingFrames() > 0)
        throw CommandError(reader.shortfall());
}

void RenderPass::run(const RenderSink& sink) {
    if (useDouble)
        stream<double>(sink);
    else
        stream<float>(sink);
    refuseShortfall();
}

template <typename Sample>
void RenderPass::stream(const RenderSink& sink) {
    hosting::Effect& effect = plugin.effect;
    ChannelBuffers<Sample> inputs(effect.record().numInputs, blockSize);
    ChannelBuffers<Sample> outputs(effect.record().numOutputs, blockSize);
    std::vector<double> left(blockSize);
    std::vector<double> right(blockSize);
    const Running running(effect);

    // The first frames that come out are the effect's latency; as many frames
    // of silence after the end push the last ones out.
    auto dropped = static_cast<std::size_t>(std::max(effect.record().initialDelay, 0));
    std::size_t owed = dropped;
    std::int64_t position = 0;
    while (true) {
        std::size_t frames = reader.read(left, right);
        if (frames > 0) {
            moveRamps(position);
            position += static_cast<std::int64_t>(frames);
            // What the effect is given is the file's samples in its precision.
            for (std::size_t i = 0; i < frames; ++i) {
                inputs[0][i] = static_cast<Sample>(left[i]);
                inputs[1][i] = static_cast<Sample>(right[i]);
            }
            sink.input({left.data(), frames}, {right.data(), frames});
        } else {
            frames = std::min(owed, blockSize);
            owed -= frames;
            std::fill_n(inputs[0], frames, Sample{});
            std::fill_n(inputs[1], frames, Sample{});
        }
        if (frames == 0)
            break;
        effect.process(inputs.pointers(), outputs.pointers(), static_cast<VstInt32>(frames));
        const std::size_t skipped = std::min(dropped, frames);
        dropped -= skipped;
        const std::size_t heard = frames - skipped;
        std::copy_n(outputs[0] + skipped, heard, left.begin());
        std::copy_n(outputs[1] + skipped, heard, right.begin());
        sink.output({left.data(), heard}, {right.data(), heard});
    }
}

} // namespace mirelon::tools
