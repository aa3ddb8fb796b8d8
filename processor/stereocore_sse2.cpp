#include "processor/stereokernels.h"
namespace mirelon::kernels {
const Version sse2{"sse2", []() noexcept { return false; }, portable.processFloat,
                   portable.processDouble};
}
