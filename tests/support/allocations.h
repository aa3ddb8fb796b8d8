// The allocations of a test program and of the plug-in that it loads. Linking this
// takes the program's allocation functions over.
#pragma once

namespace mirelon::test {

// While it lives, `action` runs just before the allocation of this number that
// this thread makes from now on, counted from 1; what it throws, the allocation
// throws. One at a time on a thread.
class AtAllocation {
  public:
    using Action = void (*)(void* context);
    AtAllocation(long number, Action action, void* context = nullptr);
    ~AtAllocation();
    AtAllocation(const AtAllocation&) = delete;
    AtAllocation& operator=(const AtAllocation&) = delete;

    // Whether that allocation was made.
    bool reached() const;
};

// This thread's allocations since it began.
long allocationsMade();

// Blocks of all threads that are allocated and not yet freed.
long blocksInUse();

} // namespace mirelon::test
