#include "tests/support/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

struct Watch {
    long made = 0;
    long left = 0; // until `action` is due
    mirelon::test::AtAllocation::Action action = nullptr;
    void* context = nullptr;
};
thread_local Watch watch;
std::atomic<long> inUse{0};

void* allocated(std::size_t size, std::size_t alignment) {
    ++watch.made;
    if (watch.left > 0 && --watch.left == 0)
        watch.action(watch.context);
    const std::size_t whole = (size + alignment - 1) / alignment * alignment;
    void* block = std::aligned_alloc(alignment, whole != 0 ? whole : alignment);
    if (block == nullptr)
        throw std::bad_alloc();
    ++inUse;
    return block;
}

void release(void* block) noexcept {
    if (block == nullptr)
        return;
    --inUse;
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) {
    return allocated(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocated(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    release(block);
}

namespace mirelon::test {

AtAllocation::AtAllocation(long number, Action action, void* context) {
    watch.left = number;
    watch.action = action;
    watch.context = context;
}

AtAllocation::~AtAllocation() {
    watch.left = 0;
}

bool AtAllocation::reached() const {
    return watch.left == 0;
}

long allocationsMade() {
    return watch.made;
}

long blocksInUse() {
    return inUse;
}

} // namespace mirelon::test
