// Mutual exclusion through C-style handles: a thread may take a mutex it has
// already, and may give up waiting for one after a time.
#pragma once

#include <cstdint>

struct XPlatMutex; // null means no mutex, which every function accepts

// A deleted mutex stays allocated (one of its two references remains), so that a
// thread which waits for it still touches valid memory.
XPlatMutex* XPlatCreateMutex();
void XPlatDeleteMutex(XPlatMutex* mutex);

// `timeoutMs`: how many milliseconds to wait at most; 0 for as long as it takes.
// Does not say whether time ran out: where that matters, wait without a limit.
void XPlatLockMutex(XPlatMutex* mutex, std::uint32_t timeoutMs);
// Undoes one lock of this thread; on a mutex that this thread does not hold
// (after a failed timed attempt, say) it does nothing.
void XPlatUnlockMutex(XPlatMutex* mutex);
