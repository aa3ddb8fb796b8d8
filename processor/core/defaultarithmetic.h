// The processor's floating-point mode, which a host may have changed on its
// audio thread: whether denormal numbers are flushed to zero, which way results
// are rounded, what NaN becomes.
#pragma once

#include <cstdint>

#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace mirelon::kernels {

// The mode of the calling thread, as the register has it that the arithmetic of
// float and double obeys. On a processor that is not known here it is always 0,
// and setting it does nothing.
#if defined(__x86_64__)
using ArithmeticMode = unsigned;
inline constexpr ArithmeticMode standardMode = 0x1F80; // all exceptions masked, nothing flushed
inline constexpr ArithmeticMode stickyBits = 0x3F;     // what has happened, not what shall

inline ArithmeticMode arithmeticMode() noexcept {
    return _mm_getcsr();
}
inline void setArithmeticMode(ArithmeticMode mode) noexcept {
    _mm_setcsr(mode);
}
#elif defined(__aarch64__)
using ArithmeticMode = std::uint64_t;
inline constexpr ArithmeticMode standardMode = 0;
inline constexpr ArithmeticMode stickyBits = 0; // those have a register of their own

inline ArithmeticMode arithmeticMode() noexcept {
    ArithmeticMode mode;
    asm volatile("mrs %0, fpcr" : "=r"(mode)::"memory");
    return mode;
}
inline void setArithmeticMode(ArithmeticMode mode) noexcept {
    asm volatile("msr fpcr, %0" ::"r"(mode) : "memory");
}
#else
using ArithmeticMode = unsigned;
inline constexpr ArithmeticMode standardMode = 0;
inline constexpr ArithmeticMode stickyBits = 0;

inline ArithmeticMode arithmeticMode() noexcept {
    return standardMode;
}
inline void setArithmeticMode(ArithmeticMode) noexcept {}
#endif

// As long as it lives, arithmetic is that of round-to-nearest with denormals. A
// host that lets its audio thread flush them, or round otherwise, finds its mode
// untouched afterwards, and its audio the same as in any other host.
class DefaultArithmetic {
  public:
    DefaultArithmetic() noexcept
        : hosts(arithmeticMode()) {
        if (differs())
            setArithmeticMode(standardMode | (hosts & stickyBits));
    }
    ~DefaultArithmetic() {
        if (differs())
            setArithmeticMode(hosts);
    }

    DefaultArithmetic(const DefaultArithmetic&) = delete;
    DefaultArithmetic& operator=(const DefaultArithmetic&) = delete;

  private:
    bool differs() const noexcept { return (hosts & ~stickyBits) != standardMode; }

    ArithmeticMode hosts;
};

} // namespace mirelon::kernels
