// The loop on 256-bit registers with AVX-512's three-operand logic.
#include "processor/core/stereolanes_avx.h"
#include "processor/core/stereoloop.h"

namespace mirelon::kernels {
namespace {

bool hasAvx512() noexcept {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
           __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx2") &&
           __builtin_cpu_supports("fma");
}

} // namespace

const Kernel avx512{"avx512", hasAvx512, process<float>, process<double>};

} // namespace mirelon::kernels
