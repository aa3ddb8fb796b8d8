#include "validator/realtimeguard.h"

#include "validator/check.h"
#include "validator/symbolnames.h"

#include <algorithm>
#include <dlfcn.h>
#include <span>
#include <string>
#include <string_view>

namespace mirelon::validator {

namespace {

template <typename Function>
Function symbol(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
}

constexpr unsigned mostOffences = 64; // that the library keeps

std::string textOf(const RtGuardOffence& offence) {
    const std::string place = placeOf(offence.caller);
    return joined(offence.number != 0 ? "system call " + std::to_string(offence.number)
                                      : std::string(offence.function) + " calls",
                  " (", offence.count, " times", place.empty() ? "" : ", first from ", place, ')');
}

} // namespace

RealTimeGuard::RealTimeGuard()
    : enter(symbol<RtGuardEnter>(rtGuardEnterName))
    , leave(symbol<RtGuardLeave>(rtGuardLeaveName))
    , offences(symbol<RtGuardOffences>(rtGuardOffencesName)) {
    if (enter == nullptr || leave == nullptr || offences == nullptr)
        throw Skipped("the interposing library is not in the process");
}

// A lock may wait for another thread, and mostly does not: that is unusual only.
void RealTimeGuard::requireNone(const char* where) const {
    const RtGuardOffence* list = nullptr;
    const unsigned count = std::min(offences(&list), mostOffences);
    const std::span<const RtGuardOffence> all(list, count);
    const auto isLock = [](const RtGuardOffence& offence) {
        return std::string_view(offence.function).starts_with("pthread_");
    };
    const auto worst = std::ranges::find_if_not(all, isLock);
    require(worst == all.end(), where, " makes ", worst == all.end() ? "" : textOf(*worst));
    expect(all.empty(), where, " makes ", all.empty() ? "" : textOf(all.front()));
}

} // namespace mirelon::validator
