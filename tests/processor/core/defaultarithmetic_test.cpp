// Hosts switch their audio threads to flushing denormals; some to worse.
#include "processor/core/defaultarithmetic.h"
#include "processor/core/stereokernels.h"
#include "tests/support/neutralcoefficients.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#if defined(__x86_64__) || defined(__aarch64__)

namespace {

using namespace mirelon;
using namespace mirelon::kernels;
using signals::Signal;

struct Mode {
    std::string name;
    ArithmeticMode bits;
};

void PrintTo(const Mode& mode, std::ostream* out) {
    *out << mode.name;
}

#if defined(__x86_64__)
constexpr ArithmeticMode flushResults = 0x8000;
constexpr ArithmeticMode flush = flushResults | 0x40; // operands, too
constexpr ArithmeticMode roundDown = 0x2000;
const Mode modes[] = {{"flush", standardMode | flush},
                      {"flushResults", standardMode | flushResults},
                      {"roundDown", standardMode | roundDown},
                      {"flushAndRoundDownWithExceptions", flush | roundDown}};
#else
constexpr ArithmeticMode flush = 1U << 24;
constexpr ArithmeticMode plainNan = 1U << 25; // without the operand's payload
constexpr ArithmeticMode roundDown = 2U << 22;
const Mode modes[] = {{"flush", flush},
                      {"plainNan", plainNan},
                      {"roundDown", roundDown},
                      {"flushAndRoundDown", flush | roundDown}};
#endif

// Another mode for as long as it lives, and what the thread had before after it.
class HostsMode {
  public:
    explicit HostsMode(ArithmeticMode mode)
        : before(arithmeticMode()) {
        setArithmeticMode(mode);
    }
    ~HostsMode() { setArithmeticMode(before); }
    HostsMode(const HostsMode&) = delete;
    HostsMode& operator=(const HostsMode&) = delete;

  private:
    ArithmeticMode before;
};

// Some frames of denormals, of ordinary samples and of NaN with a payload, as they
// come out of the core, and the followers behind them.
class HostsArithmetic : public testing::TestWithParam<Mode> {
  protected:
    struct Result {
        std::vector<float> samples;
        Envelopes followers;
        ArithmeticMode modeAfterwards;
    };

    template <typename Process>
    static Result processedBy(ArithmeticMode mode, Process process) {
        std::vector<float> left(200);
        std::vector<float> right(200);
        signals::fill<float>(left, Signal::mixture, 1, 0);
        signals::fill<float>(right, Signal::mixture, 1, 1);
        for (std::size_t i = 8; i < 16; ++i) {
            left[i] = std::bit_cast<float>(0x00012345U + static_cast<unsigned>(i));
            right[i] = std::bit_cast<float>(0x80054321U + static_cast<unsigned>(i));
        }
        left.back() = std::bit_cast<float>(0x7FC12345U);
        Coefficients coefficients = neutralCoefficients();
        coefficients.widthSide = 0.6F;
        Envelopes followers{};
        ArithmeticMode after = 0;
        {
            const HostsMode hosts(mode);
            process(coefficients, followers, StereoInput<float>{left.data(), right.data()},
                    StereoOutput<float>{left.data(), right.data()}, 200);
            after = arithmeticMode();
        }
        left.insert(left.end(), right.begin(), right.end());
        return {left, followers, after};
    }

    static Result processed(ArithmeticMode mode) {
        return processedBy(
            mode, [](const Coefficients& coefficients, Envelopes& followers, auto in, auto out,
                     int frames) { processBlock(coefficients, 1e-3, followers, in, out, frames); });
    }

    // A kernel by itself, in whatever mode the thread is.
    static Result processedUnprotected(ArithmeticMode mode) {
        return processedBy(mode, [](const Coefficients& coefficients, Envelopes& followers, auto in,
                                    auto out, int frames) {
            portable.processFloat({coefficients, 1e-3, followers, in, out, frames});
        });
    }

    static bool sameBits(const Result& a, const Result& b) {
        return std::memcmp(a.samples.data(), b.samples.data(), a.samples.size() * sizeof(float)) ==
                   0 &&
               std::bit_cast<std::array<std::uint64_t, 4>>(a.followers) ==
                   std::bit_cast<std::array<std::uint64_t, 4>>(b.followers);
    }
};

INSTANTIATE_TEST_SUITE_P(Of, HostsArithmetic, testing::ValuesIn(modes),
                         [](const auto& tested) { return tested.param.name; });

TEST_P(HostsArithmetic, ChangesNoBit) {
    EXPECT_TRUE(sameBits(processed(GetParam().bits), processed(standardMode)));
}

TEST_P(HostsArithmetic, ComesBack) {
    EXPECT_EQ(processed(GetParam().bits).modeAfterwards & ~stickyBits, GetParam().bits);
}

// Without the protection the bits would be others: these tests can fail. Not with
// exceptions that would end the program.
class HostsArithmeticUnprotected : public HostsArithmetic {};
INSTANTIATE_TEST_SUITE_P(Of, HostsArithmeticUnprotected,
                         testing::ValuesIn(std::begin(modes), std::prev(std::end(modes))),
                         [](const auto& tested) { return tested.param.name; });

TEST_P(HostsArithmeticUnprotected, ChangesBits) {
    EXPECT_FALSE(
        sameBits(processedUnprotected(GetParam().bits), processedUnprotected(standardMode)));
}

TEST(DefaultArithmetic, LeavesTheStandardModeAlone) {
    const HostsMode hosts(standardMode);
    {
        const DefaultArithmetic arithmetic;
        EXPECT_EQ(arithmeticMode() & ~stickyBits, standardMode);
    }
    EXPECT_EQ(arithmeticMode() & ~stickyBits, standardMode);
}

#if defined(__x86_64__)
TEST(DefaultArithmetic, KeepsWhatHasHappened) {
    const HostsMode hosts(standardMode | flush | 0x20);
    const DefaultArithmetic arithmetic;
    EXPECT_EQ(arithmeticMode() & stickyBits, 0x20U);
}
#endif

} // namespace

#endif
