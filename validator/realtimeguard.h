// What a section of code does that an audio thread must not, in a check to which
// rtguard.so is preloaded.
#pragma once

#include "validator/rtguard.h"

namespace mirelon::validator {

class RealTimeGuard {
  public:
    // Throws Skipped where the library is not in the process.
    RealTimeGuard();

    // The calling thread's.
    template <typename Call>
    void watch(Call call) const {
        enter();
        call();
        leave();
    }

    // Throws Failed with the first offence of those so far, Unusual when all are locks.
    void requireNone(const char* where) const;

  private:
    RtGuardEnter enter;
    RtGuardLeave leave;
    RtGuardOffences offences;
};

} // namespace mirelon::validator
