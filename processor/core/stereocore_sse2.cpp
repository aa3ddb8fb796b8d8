// The loop for any x86-64 processor, fused steps without fused instructions.
#include "processor/core/stereolanes_sse2.h"
#include "processor/core/stereoloop.h"

namespace mirelon::kernels {
namespace {

bool anywhere() noexcept {
    return true;
}

} // namespace

const Kernel sse2{"sse2", anywhere, process<float>, process<double>};

} // namespace mirelon::kernels
