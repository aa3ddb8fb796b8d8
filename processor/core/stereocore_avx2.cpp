// The loop on AVX2 and FMA.
#include "processor/core/stereolanes_avx.h"
#include "processor/core/stereoloop.h"

namespace mirelon::kernels {
namespace {

bool hasAvx2() noexcept {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

} // namespace

const Kernel avx2{"avx2", hasAvx2, process<float>, process<double>};

} // namespace mirelon::kernels
