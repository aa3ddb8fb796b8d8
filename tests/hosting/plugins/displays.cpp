// An effect whose parameters show what other makers' show: units in the display or
// in the label, a decimal comma, a range that falls, words, and steps. It claims to
// convert every text and converts none.
#include "tests/hosting/plugins/effectrecord.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

struct Shown {
    const char* name;
    const char* label;
    std::string (*display)(double value);
};

template <typename... Values>
std::string formed(const char* format, Values... values) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

constexpr std::array parameters{
    Shown{"Drive", "dB", [](double v) { return formed("%+.1f dB", v * 48.0 - 24.0); }},
    Shown{"Mix", "", [](double v) { return formed("%.0f %%", v * 100.0); }},
    Shown{"Release", "ms",
          [](double v) {
              std::string text = formed("%.2f", 10.0 + v * 490.0);
              std::ranges::replace(text, '.', ',');
              return text;
          }},
    Shown{"Damping", "%", [](double v) { return formed("%.1f", 100.0 - v * 100.0); }},
    Shown{"Mode", "", [](double v) { return std::string(v < 0.5 ? "Soft" : "Hard"); }},
    Shown{"Voices", "", [](double v) { return formed("%d", 1 + static_cast<int>(v * 7.0)); }},
    Shown{"Pan", "",
          [](double v) {
              return v == 0.5 ? std::string("C")
                              : formed("%.0f%c", 100.0 * (v < 0.5 ? 1.0 - 2.0 * v : 2.0 * v - 1.0),
                                       v < 0.5 ? 'L' : 'R');
          }},
};

struct Displays {
    AEffect record;
    std::array<float, parameters.size()> values{};
};

Displays& of(AEffect* effect) {
    return *static_cast<Displays*>(effect->object);
}

VstIntPtr dispatch(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr /*value*/, void* ptr,
                   float /*opt*/) {
    const auto put = [ptr](const std::string& text) -> VstIntPtr {
        std::memcpy(ptr, text.c_str(), text.size() + 1);
        return 0;
    };
    const auto at = static_cast<std::size_t>(index);
    switch (opcode) {
    case effClose:
        delete &of(effect);
        return 1;
    case effGetParamName:
        return put(parameters.at(at).name);
    case effGetParamLabel:
        return put(parameters.at(at).label);
    case effGetParamDisplay:
        return put(parameters.at(at).display(static_cast<double>(of(effect).values.at(at))));
    case effString2Parameter:
        return 1;
    default:
        return 0;
    }
}

} // namespace

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback /*host*/) {
    auto* const self = new Displays{mirelon::test::idleRecord()};
    AEffect& record = self->record;
    record.object = self;
    record.dispatcher = dispatch;
    record.setParameter = [](AEffect* effect, VstInt32 index, float value) {
        of(effect).values.at(static_cast<std::size_t>(index)) = value;
    };
    record.getParameter = [](AEffect* effect, VstInt32 index) {
        return of(effect).values.at(static_cast<std::size_t>(index));
    };
    record.numParams = static_cast<VstInt32>(parameters.size());
    self->values.fill(0.3F);
    return &record;
}
