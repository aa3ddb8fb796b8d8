#include "validator/realtimeguard.h"

#include "validator/check.h"

#include <dlfcn.h>
#include <filesystem>
#include <sstream>

namespace mirelon::validator {

namespace {

template <typename Function>
Function symbol(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
}

} // namespace

RealTimeGuard::RealTimeGuard()
    : enter(symbol<RtGuardEnter>(rtGuardEnterName))
    , leave(symbol<RtGuardLeave>(rtGuardLeaveName))
    , offences(symbol<RtGuardOffences>(rtGuardOffencesName)) {
    if (enter == nullptr || leave == nullptr || offences == nullptr)
        throw Skipped("the interposing library is not in the process");
}

void RealTimeGuard::requireNone(const char* where) const {
    const RtGuardOffence* list = nullptr;
    if (offences(&list) == 0)
        return;
    Dl_info info{};
    const bool known = dladdr(list->caller, &info) != 0 && info.dli_fname != nullptr;
    std::ostringstream what;
    what << where << " makes ";
    if (list->number != 0)
        what << "system call " << list->number;
    else
        what << list->function << " calls";
    what << " (" << list->count << " times";
    if (known)
        what << ", first from " << std::filesystem::path(info.dli_fname).filename().string()
             << "+0x" << std::hex
             << static_cast<const char*>(list->caller) - static_cast<const char*>(info.dli_fbase);
    what << ')';
    throw Failed(what.str());
}

} // namespace mirelon::validator
