// What the test effect says of itself and of its parameters.
#pragma once

#include "shell/vst24.h"
#include "tests/validator/defects.h"

#include <cstring>

namespace mirelon::test::brokeneffects {

class Description {
  public:
    // Of the instance with this number and so many parameters.
    Description(VstInt32 number, VstInt32 parameterCount)
        : number(number)
        , parameterCount(parameterCount) {}

    // Answers a host's question; 0 where it is none of these. `value` gives the value of
    // the parameter that is asked for.
    template <typename Value>
    VstIntPtr answer(VstInt32 opcode, VstInt32 index, void* ptr, Value value) {
        auto* const text = static_cast<char*>(ptr);
        switch (opcode) {
        case effGetEffectName:
            std::strcpy(text, hasDefect("no-name") ? "" : "test effect");
            if (hasDefect("name-changes"))
                text[0] = static_cast<char>('a' + texts++ % 26);
            if (hasDefect("name-per-instance"))
                text[0] = static_cast<char>('a' + number % 26);
            return 1;
        case effGetVendorString:
            std::strcpy(text, "tests");
            if (hasDefect("vendor-changes"))
                text[0] = static_cast<char>('a' + texts++ % 26);
            return 1;
        case effGetVendorVersion:
            return hasDefect("version-per-instance") ? number : 0;
        case effGetParamName:
            std::strcpy(text, hasDefect("parameter-name") ? "" : "knob");
            return 0;
        case effGetParamLabel:
        case effGetParamDisplay:
            if (hasDefect("text-not-terminated"))
                std::memset(text, 'x', 200);
            else if (hasDefect("switches"))
                std::strcpy(text, value() < 0.5F ? "off" : "on");
            else if (hasDefect("display-changes") && opcode == effGetParamDisplay)
                std::strcpy(text, texts++ % 2 == 0 ? "x" : "y");
            else
                std::strcpy(text, "x");
            return 0;
        case effGetParameterProperties:
            return properties(index, static_cast<VstParameterProperties*>(ptr));
        case effGetVstVersion:
            return kVstVersion;
        case effCanDo:
            return std::strcmp(text, "receiveVstMidiEvent") == 0 && !hasDefect("no-notes") ? 1 : 0;
        default:
            return 0;
        }
    }

  private:
    VstIntPtr properties(VstInt32 index, VstParameterProperties* p) {
        if (index < 0 || index >= parameterCount || hasDefect("properties-none"))
            return 0;
        if (hasDefect("properties-sometimes") && ++descriptions % 2 == 0)
            return 0;
        *p = {};
        std::strcpy(p->label, "knob");
        if (hasDefect("properties-change"))
            p->stepInteger = ++descriptions;
        if (hasDefect("properties-not-terminated"))
            std::memset(p->label, 'x', sizeof p->label);
        p->flags = kVstParameterUsesIntegerMinMax;
        p->maxInteger = hasDefect("properties") ? -1 : 1;
        return 1;
    }

    VstInt32 number;
    VstInt32 parameterCount;
    int texts = 0;
    VstInt32 descriptions = 0;
};

} // namespace mirelon::test::brokeneffects
