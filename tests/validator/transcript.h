// What a test plug-in has been told: how often each of its functions was called, a digest of
// what with, and one of the order of all calls. Kept if the environment names a file. Counted and
// not recorded, because calls are watched for allocating. For calls of one thread at a time.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

namespace mirelon::test {

class Transcript {
  public:
    using Bytes = std::span<const std::byte>;

    bool isKept() const { return file != nullptr; }

    // A call of the function, which is one of a family's if it has a number.
    template <typename... Values>
    void note(const char* function, int number, const Values&... values) {
        if (!isKept())
            return;
        order.add(function);
        order.add(number);
        Call& call = callOf(function, number);
        ++call.times;
        (call.add(values), ...);
    }
    // The same of a function that is called by the clock, as often as it comes to.
    void noteOnce(const char* function, int number) {
        if (isKept())
            callOf(function, number).times = 1;
    }

    // Adds what was noted since the last time to the file.
    void write() {
        if (!isKept())
            return;
        std::FILE* const stream = std::fopen(file, "a");
        if (stream == nullptr)
            std::abort();
        for (std::size_t i = 0; i < known; ++i)
            std::fprintf(stream, "%s %d: %ld times, %08x\n", calls[i].function, calls[i].number,
                         calls[i].times, calls[i].shortened());
        std::fprintf(stream, "in this order: %08x\n", order.shortened());
        std::fclose(stream);
        known = 0;
        order = {};
    }

  private:
    struct Call {
        const char* function = nullptr;
        int number = 0;
        long times = 0;
        std::uint64_t digest = 0xcbf29ce484222325; // FNV-1a

        unsigned shortened() const { return static_cast<unsigned>(digest ^ (digest >> 32U)); }
        void add(Bytes bytes) {
            for (const std::byte byte : bytes)
                digest = (digest ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001b3;
        }
        void add(const char* text) { add(std::as_bytes(std::span(text, std::strlen(text)))); }
        void add(std::integral auto number) {
            const auto wide = static_cast<std::int64_t>(number);
            add(std::as_bytes(std::span(&wide, 1)));
        }
        void add(std::floating_point auto number) {
            const auto wide = static_cast<double>(number);
            add(std::as_bytes(std::span(&wide, 1)));
        }
    };

    Call& callOf(const char* function, int number) {
        for (std::size_t i = 0; i < known; ++i)
            if (calls[i].number == number && std::strcmp(calls[i].function, function) == 0)
                return calls[i];
        calls.at(known) = {};
        calls[known].function = function;
        calls[known].number = number;
        return calls[known++];
    }

    const char* const file = std::getenv("MIRELON_TEST_TRANSCRIPT");
    std::size_t known = 0;
    std::array<Call, 160> calls{};
    Call order;
};

} // namespace mirelon::test
