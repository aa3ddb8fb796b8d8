// What the interposing library rtguard.so offers to the process it is loaded
// into. Looked up by name, so that nothing links against it.
#pragma once

extern "C" {

// One kind of call that happened inside a guarded section.
struct RtGuardOffence {
    const char* function; // the C library's name for it, or "system call"
    const void* caller;   // whose code it was, the first time
    long number;          // of the system call, otherwise 0
    unsigned long count;
};

// From `enter` to `leave` every allocation, lock, file operation and system
// call of the calling thread is noted.
using RtGuardEnter = void (*)();
using RtGuardLeave = void (*)();
// The offences so far, of all threads; answers how many there are.
using RtGuardOffences = unsigned (*)(const RtGuardOffence** offences);
}

namespace mirelon::validator {

inline constexpr const char* rtGuardFile = "rtguard.so";
inline constexpr const char* rtGuardEnterName = "mirelon_rtguard_enter";
inline constexpr const char* rtGuardLeaveName = "mirelon_rtguard_leave";
inline constexpr const char* rtGuardOffencesName = "mirelon_rtguard_offences";

} // namespace mirelon::validator
