// What a test plug-in has been told: how often each of its functions was called, a digest of
// what with, one of the order of all calls, and one of what the validator said meanwhile that it
// was doing. Kept if the environment names a file. Counted and not recorded, because calls are
// watched for allocating. For calls of one thread at a time.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <span>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

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
        noteActivity();
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
        if (activity != nullptr)
            std::fprintf(stream, "%ld activities: %08x\n", activities.times,
                         activities.shortened());
        std::fclose(stream);
        known = 0;
        order = {};
        activities = {};
        lastActivity = {};
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

    // As the process that runs a check keeps it for the one that waits for its end.
    using Activity = std::array<char, 256>;

    // Null where nobody keeps it.
    static const Activity* keptActivity() {
        std::ifstream stream("/proc/self/cmdline", std::ios::binary);
        for (std::string word; std::getline(stream, word, '\0');)
            if (word == "--activity" && std::getline(stream, word, '\0')) {
                const int descriptor = open(word.c_str(), O_RDONLY | O_CLOEXEC);
                void* const mapped =
                    mmap(nullptr, sizeof(Activity), PROT_READ, MAP_SHARED, descriptor, 0);
                close(descriptor);
                return mapped != MAP_FAILED ? static_cast<const Activity*>(mapped) : nullptr;
            }
        return nullptr;
    }

    // Its text, and whether it is unusual. What stands behind the text's end is from others.
    void noteActivity() {
        if (activity == nullptr || *activity == lastActivity)
            return;
        lastActivity = *activity;
        ++activities.times;
        activities.add(lastActivity.data());
        activities.add(static_cast<int>(lastActivity.back()));
    }

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
    const Activity* const activity = isKept() ? keptActivity() : nullptr;
    Activity lastActivity{};
    Call activities;
};

} // namespace mirelon::test
