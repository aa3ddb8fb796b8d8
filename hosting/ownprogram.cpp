#include "hosting/ownprogram.h"

#include <sys/auxv.h>
#include <system_error>

namespace mirelon::hosting {

std::filesystem::path ownProgram() {
    std::error_code failure;
    std::filesystem::path link = std::filesystem::read_symlink("/proc/self/exe", failure);
    if (!failure)
        return link;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel's vector is of numbers
    const auto* const started = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
    if (started == nullptr)
        return {};
    const std::filesystem::path file = std::filesystem::canonical(started, failure);
    return failure ? std::filesystem::path() : file;
}

} // namespace mirelon::hosting
