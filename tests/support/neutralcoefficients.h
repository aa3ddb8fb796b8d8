#pragma once

#include "processor/core/parameters.h"

namespace mirelon {

// Those of a new instance: processing is on and leaves the audio as it is.
inline Coefficients neutralCoefficients() {
    Coefficients c;
    for (int i = 0; i < kNumParams; ++i)
        applyParameter(c, i, i <= kParamProcess ? 0.5F : 0.0F);
    return c;
}

} // namespace mirelon
