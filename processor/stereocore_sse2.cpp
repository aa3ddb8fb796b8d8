// The loop for any x86-64 processor, fused steps without fused instructions.
#include "processor/stereolanes_sse2.h"
#include "processor/stereoloop.h"

namespace mirelon::kernels {
namespace {

bool anywhere() noexcept {
    return true;
}

} // namespace

const Version sse2{"sse2", anywhere, process<float>, process<double>};

} // namespace mirelon::kernels
