// A small effect that is right in everything the validator looks at, or wrong
// in the one thing that the environment variable MIRELON_DEFECT names: shows
// for each check that it can fail.
#include "shell/vst24.h"
#include "tests/validator/brokeneffects/description.h"
#include "tests/validator/brokeneffects/editor.h"
#include "tests/validator/brokeneffects/notes.h"
#include "tests/validator/brokeneffects/transcript.h"
#include "tests/validator/defects.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <mutex>
#include <thread>
#include <unistd.h>
#include <vector>

#define TEST_EFFECT_EXPORT extern "C" __attribute__((visibility("default")))

#ifdef TEST_EFFECT_LEAKS
// Two names for everybody to see.
TEST_EFFECT_EXPORT int leakedHelper;
int leakedHelper = 1;
#endif

using namespace mirelon::test;
using namespace mirelon::test::brokeneffects;

namespace {

constexpr int parameterCount = 3; // gain, balance, and one that does nothing

// A state: an owner tag, a version and the parameters.
struct State {
    std::uint32_t owner = 0x54737445;
    std::uint32_t version = 1;
    std::array<float, parameterCount> values{};
};

class TestEffect {
  public:
    TestEffect() {
        record.magic = kEffectMagic;
        record.dispatcher = [](AEffect* e, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                               void* ptr, float opt) {
            auto* const self = static_cast<TestEffect*>(e->object);
            noteDispatcher(opcode, index, value, ptr, opt);
            if (opcode == effClose) {
                if (!hasDefect("one-record"))
                    delete self;
                return VstIntPtr{1};
            }
            return self->dispatch(opcode, index, value, ptr, opt);
        };
        record.setParameter = [](AEffect* e, VstInt32 index, float value) {
            transcript.note("setParameter", 0, index, value);
            static_cast<TestEffect*>(e->object)->setParameter(index, value);
        };
        record.getParameter = [](AEffect* e, VstInt32 index) {
            transcript.note("getParameter", 0, index);
            return static_cast<TestEffect*>(e->object)->getParameter(index);
        };
        record.processReplacing = [](AEffect* e, float** in, float** out, VstInt32 frames) {
            static_cast<TestEffect*>(e->object)->process(in, out, frames);
        };
        record.processDoubleReplacing = [](AEffect* e, double** in, double** out, VstInt32 frames) {
            static_cast<TestEffect*>(e->object)->process(in, out, frames);
        };
        ++living;
        record.numPrograms = hasDefect("many-programs") ? 300 : 2;
        record.numParams = hasDefect("no-parameters") ? 0 : parameterCount;
        record.numInputs = hasDefect("one-input") ? 1 : 2;
        record.numOutputs = hasDefect("no-outputs") ? 0 : 2;
        record.flags = effFlagsCanReplacing | (hasDefect("no-editor") ? 0 : effFlagsHasEditor) |
                       (hasDefect("no-state") ? 0 : effFlagsProgramChunks) |
                       (hasDefect("no-doubles") ? 0 : effFlagsCanDoubleReplacing) |
                       (hasDefect("instrument") ? effFlagsIsSynth : 0);
        if (hasDefect("promised-silence"))
            record.flags |= effFlagsNoSoundInStop;
        record.object = this;
        record.uniqueID = fourCharacters("TstE");
        if (hasDefect("no-id"))
            record.uniqueID = 0;
        if (hasDefect("id-changes"))
            record.uniqueID += number;
        state.values.fill(0.5F);
        if (hasDefect("memory"))
            ballast.assign(std::size_t{40} << 20U, 'x');
    }
    ~TestEffect() {
        if (hasDefect("crash-on-close"))
            crash();
        if (--living == 0)
            transcript.write();
    }
    TestEffect(const TestEffect&) = delete;
    TestEffect& operator=(const TestEffect&) = delete;

    AEffect record{};

  private:
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
        switch (opcode) {
        case effSetProgram:
            if (hasDefect("program-misnumbered")) {
                state.values[2] = value == 1 ? 1.0F : 0.0F;
                return 0;
            }
            if (value >= (hasDefect("program-before") ? -1 : 0) &&
                value < record.numPrograms + (hasDefect("program-beyond") ? 1 : 0) &&
                !hasDefect("program"))
                program = static_cast<VstInt32>(value);
            return 0;
        case effGetProgram:
            return program;
        case effGetProgramName:
            if (nameSpoilt)
                crash();
            std::strcpy(static_cast<char*>(ptr), program == 0 ? "one" : "two");
            return 0;
        case effGetProgramNameIndexed:
            if (hasDefect("program-renamed"))
                std::strcpy(static_cast<char*>(ptr), "other");
            return hasDefect("program-renamed") ? 1 : 0;
        case effSetSampleRate:
            rateKnown = true;
            if (hasDefect("rate-while-running") && running && opt != rate)
                poisoned = true;
            rate = opt;
            return 0;
        case effSetBlockSize:
            mostFrames = static_cast<VstInt32>(value);
            return 0;
        case effMainsChanged:
            running = value != 0;
            if (running)
                noteHost(record);
            if (hasDefect("prints-folders") && running) {
                printFolders();
                crash();
            }
            if (hasDefect("crash-at-the-end") && running)
                atTheEnd(crash);
            if (hasDefect("status-at-the-end") && running)
                atTheEnd([] { _exit(3); });
            if (running && hasDefect("resume-hangs") && tellProcesses())
                std::this_thread::sleep_for(std::chrono::hours(1));
            if (running && hasDefect("slow-resume"))
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            if (running && ++resumes == 50 && hasDefect("fiftieth-resume"))
                poisoned = true;
            if (!running && !hasDefect("stays-poisoned"))
                poisoned = poisoned && !hasDefect("strange-values");
            return 0;
        case effEditGetRect:
            *static_cast<ERect**>(ptr) = editorOpen && hasDefect("no-rectangle") ? nullptr : &rect;
            return 1;
        case effEditOpen:
            if (hasDefect("rate-unknown") && !rateKnown)
                crash();
            editorOpen = true;
            return editor.open(reinterpret_cast<Window>(ptr));
        case effEditClose:
            editorOpen = false;
            editor.close();
            return 0;
        case effGetChunk:
            return getChunk(static_cast<void**>(ptr));
        case effSetChunk:
            return setChunk(ptr, value);
        case effProcessEvents:
            return notes.take(*static_cast<const VstEvents*>(ptr));
        default:
            return description.answer(opcode, index, ptr, [&] { return getParameter(index); });
        }
    }

    void setParameter(VstInt32 index, float value) {
        if (hasDefect("realtime-set-parameter"))
            allocate();
        if (hasDefect("parameter-system-call"))
            getppid();
        if (hasDefect("index-wraps"))
            index = std::abs(index % parameterCount);
        if (hasDefect("value-leaves-range"))
            ++changes;
        if (hasDefect("index-at-count") && index == parameterCount)
            index = 0;
        if (index < 0 || index >= parameterCount)
            return;
        if (hasDefect("nan-crash") && std::isnan(value)) {
            std::fputs("\x1b[1;31mnan\x1b[0m is no \x1b[mvalue\n", stderr);
            crash();
        }
        if (hasDefect("value-before-rate") && !rateKnown && value == 0.75F)
            crash();
        if (hasDefect("stays-poisoned") && !std::isfinite(value))
            poisoned = true;
        if (hasDefect("value-overruns") && !std::isfinite(value))
            overruns = true;
        if (hasDefect("automation") && changes++ > 500)
            poisoned = true;
        if (hasDefect("realtime-with-editor") && editorOpen)
            allocate();
        if ((hasDefect("entered-twice") || hasDefect("overruns-entered-twice")) &&
            inside.load() > 0)
            ++collisions;
        if (collisions > 20 && hasDefect("overruns-entered-twice"))
            overruns = true;
        else if (collisions > 20)
            crash();
        state.values[static_cast<std::size_t>(index)] = value;
    }

    float getParameter(VstInt32 index) {
        if (hasDefect("value-out-of-range") || (hasDefect("value-leaves-range") && changes > 500))
            return 1.5F;
        if (hasDefect("value-creeps"))
            return static_cast<float>(changes++ % 100) / 100.0F;
        if (hasDefect("realtime-get-parameter"))
            allocate();
        if (hasDefectNow("value-moves"))
            return 0.3125F;
        return index >= 0 && index < parameterCount ? state.values[static_cast<std::size_t>(index)]
                                                    : 0.0F;
    }

    // Of switches, which show their positions or do not.
    static void keepSteps(State& kept) {
        if (!hasDefect("switches") && !hasDefect("wordless-switches"))
            return;
        for (float& value : kept.values)
            value = value < 0.5F ? 0.0F : 1.0F;
    }

    VstIntPtr getChunk(void** data) {
        if (hasDefect("state-counts"))
            ++state.version;
        saved = state;
        keepSteps(saved);
        saved.version += damages;
        *data = &saved;
        return hasDefect("state-empty") ? 0 : sizeof saved;
    }

    VstIntPtr setChunk(void* data, VstIntPtr size) {
        const bool refused = size != sizeof saved || std::memcmp(data, &state, 8) != 0;
        poisoned = poisoned || (refused && hasDefect("state-poisons"));
        overruns = overruns || (refused && hasDefect("state-overruns"));
        nameSpoilt = nameSpoilt || (refused && hasDefect("state-spoils-name"));
        damages += refused && hasDefect("state-keeps-damage") ? 1 : 0;
        if (hasDefect("state-length-unchecked")) {
            std::memcpy(&saved, data, sizeof saved);
        } else if (size != sizeof saved) {
            if (hasDefect("long-state") && size > 100000)
                crash();
            return 0;
        }
        std::memcpy(&saved, data, sizeof saved);
        if (hasDefectNow("state-refused"))
            return 0;
        if (hasDefect("byte-order") && saved.owner == __builtin_bswap32(State{}.owner))
            crash();
        if (hasDefect("flip") && saved.owner == State{}.owner && saved.version != 1)
            crash();
        if (saved.owner != State{}.owner || (saved.version != 1 && !hasDefect("state-counts")))
            return 0;
        if (hasDefect("state-forgets"))
            saved.values[1] = 0.0F;
        if (hasDefect("state-rounds"))
            saved.values[1] -= 0.0005F;
        if (hasDefect("state-per-process") && applied++ == 0)
            return 1;
        if (hasDefect("state-editor") && editorOpen)
            return 1;
        state = saved;
        keepSteps(state);
        return 1;
    }

    template <typename Sample>
    void misbehave(Sample** out, VstInt32 frames) {
        if (hasDefect("writes-outside") || overruns)
            out[0][frames] = 0;
        if (hasDefect("writes-before"))
            out[0][-1] = 0;
        if (hasDefect("large-block") && frames == 8192)
            out[0][0] = std::numeric_limits<Sample>::quiet_NaN();
        if (hasDefect("huge-block") && frames == 16384)
            crash();
        if (hasDefect("telephone-rate") && rate == 8000.0F)
            out[0][0] = std::numeric_limits<Sample>::quiet_NaN();
        if (hasDefect("rate-", std::lround(rate)) || hasDefect("block-", frames))
            out[0][0] = std::numeric_limits<Sample>::quiet_NaN();
        if (hasDefect("double") && sizeof(Sample) == sizeof(double))
            out[0][0] = std::numeric_limits<Sample>::infinity();
        if (hasDefect("odd-block") && frames % 2 == 1 && frames > 129)
            crash();
        if (hasDefect("odd-noise") && frames % 2 == 1)
            out[0][0] = std::numeric_limits<Sample>::quiet_NaN();
        if (hasDefect("never-the-same"))
            out[0][0] += static_cast<Sample>(
                std::chrono::steady_clock::now().time_since_epoch().count() % 1'000'003);
        if (hasDefect("whisper"))
            out[0][0] += static_cast<Sample>(1e-8);
        if (hasDefect("against-denormals"))
            out[0][0] += static_cast<Sample>(5e-10);
        if (hasDefect("realtime-double") && sizeof(Sample) == sizeof(double))
            allocate();
        if (hasDefect("realtime-aligned"))
            allocateAligned();
        if (hasDefect("sound-of-silence") || hasDefect("promised-silence"))
            out[0][0] += static_cast<Sample>(0.001);
        if (hasDefect("drift") && frames == 64)
            state.values[0] *= 0.9F;
        if (hasDefect("editor-beside-audio") && editorOpen)
            out[0][0] = std::numeric_limits<Sample>::quiet_NaN();
        if (hasDefect("realtime-lock"))
            const std::lock_guard lock(access);
        if (hasDefect("realtime-file"))
            ::close(::open("/dev/null", O_RDONLY)); // NOLINT(cppcoreguidelines-pro-type-vararg)
        if (poisoned || hasDefectNow("nan"))
            out[0][0] = std::numeric_limits<Sample>::quiet_NaN();
    }

    template <typename Sample>
    void process(Sample** in, Sample** out, VstInt32 frames) {
        ++inside;
        if (!running || frames > mostFrames)
            crash(); // no host does that
        noteProcess(std::span<Sample* const>(in, 2), frames);
        const std::array<float, parameterCount> values = state.values;
        const auto gain = std::isfinite(values[0]) ? static_cast<Sample>(values[0]) : Sample(0);
        for (int channel = 0; channel < 2; ++channel) {
            for (VstInt32 i = 0; i < frames; ++i) {
                if (hasDefect("clears-output-first") && i == 0)
                    std::fill_n(out[channel], frames, Sample(0));
                out[channel][i] = gain * in[channel][i];
            }
        }
        if (hasDefect("changes-input"))
            in[0][0] += Sample(1);
        misbehave(out, frames);
        notes.spoil(out, frames);
        --inside;
    }

    static inline std::atomic<VstInt32> made{0};
    static inline int living = 0;

    const VstInt32 number = made++;
    Description description{number, parameterCount};
    State state;
    State saved;
    Editor editor;
    Notes notes;
    ERect rect{0, 0, 50, 100};
    std::vector<char> ballast;
    std::mutex access;
    std::atomic<int> inside{0};
    std::atomic<int> collisions{0};
    std::atomic<bool> poisoned{false};
    std::atomic<bool> overruns{false};
    std::uint32_t damages = 0;
    bool nameSpoilt = false;
    std::atomic<bool> editorOpen{false};
    VstInt32 program = 0;
    float rate = 44100.0F;
    bool rateKnown = false;
    VstInt32 mostFrames = 0;
    bool running = false;
    int resumes = 0;
    int changes = 0;
    int applied = 0;
};

} // namespace

#ifndef TEST_EFFECT_NO_ENTRY
TEST_EFFECT_EXPORT AEffect* VSTPluginMain(audioMasterCallback host) {
    hostOfAll = host;
    if (hasDefect("slow-load"))
        std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    if (hasDefect("one-instance") || hasDefect("one-record")) {
        static TestEffect* const only = new TestEffect;
        return &only->record;
    }
    return &(new TestEffect)->record;
}
#endif
