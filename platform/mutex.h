// A recursive lock with an optional time limit, for sharing data between the
// audio thread and the user interface.
#pragma once

#include <cstdint>

struct XPlatMutex; // null means no mutex, which every function accepts

// Holds two references, of which XPlatDeleteMutex drops one: a deleted mutex
// stays allocated, so that a thread still waiting on it touches valid memory.
XPlatMutex* XPlatCreateMutex();
void XPlatDeleteMutex(XPlatMutex* mutex);

// Waits at most `timeoutMs` milliseconds, without limit when that is 0. A timed
// attempt that fails returns like one that succeeds: a caller that must know
// uses no limit.
void XPlatLockMutex(XPlatMutex* mutex, std::uint32_t timeoutMs);
// Undoes one lock of this thread; on a mutex that this thread does not hold
// (after a failed timed attempt, say) it does nothing.
void XPlatUnlockMutex(XPlatMutex* mutex);
