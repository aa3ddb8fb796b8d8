// Messages to and from an audio thread.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace mirelon::hosting {

// Whole messages, from one thread to another. Neither side waits or allocates.
class MessageQueue {
  public:
    struct Message {
        std::uint32_t port;
        std::span<const std::byte> bytes;
    };

    // Room in bytes, for the messages and eight more each.
    explicit MessageQueue(std::size_t room)
        : ring(room)
        , taken(room) {}

    // The one thread's. False when there is no room: then nothing is put in.
    bool put(std::uint32_t port, std::span<const std::byte> message) noexcept {
        const std::size_t end = written.load(std::memory_order_relaxed);
        const std::size_t used = end - read.load(std::memory_order_acquire);
        if (message.size() + sizeof(Head) > ring.size() - used)
            return false;
        const Head head{port, static_cast<std::uint32_t>(message.size())};
        write(end, std::as_bytes(std::span(&head, 1)));
        write(end + sizeof head, message);
        written.store(end + sizeof head + message.size(), std::memory_order_release);
        return true;
    }

    // The other thread's: the oldest message, until the next call.
    std::optional<Message> take() noexcept {
        const std::size_t begin = read.load(std::memory_order_relaxed);
        if (begin == written.load(std::memory_order_acquire))
            return std::nullopt;
        Head head{};
        copy(begin, std::as_writable_bytes(std::span(&head, 1)));
        const std::span<std::byte> bytes(taken.data(), head.size);
        copy(begin + sizeof head, bytes);
        read.store(begin + sizeof head + head.size, std::memory_order_release);
        return Message{head.port, bytes};
    }

  private:
    struct Head {
        std::uint32_t port;
        std::uint32_t size;
    };

    // The part up to the ring's end, then the rest from its begin.
    void write(std::size_t at, std::span<const std::byte> bytes) noexcept {
        const std::size_t place = at % ring.size();
        const std::size_t first = std::min(bytes.size(), ring.size() - place);
        std::copy_n(bytes.begin(), first, ring.begin() + static_cast<std::ptrdiff_t>(place));
        std::ranges::copy(bytes.subspan(first), ring.begin());
    }
    void copy(std::size_t at, std::span<std::byte> into) const noexcept {
        const std::size_t place = at % ring.size();
        const std::size_t first = std::min(into.size(), ring.size() - place);
        std::copy_n(ring.begin() + static_cast<std::ptrdiff_t>(place), first, into.begin());
        std::copy_n(ring.begin(), into.size() - first,
                    into.begin() + static_cast<std::ptrdiff_t>(first));
    }

    std::vector<std::byte> ring;
    std::vector<std::byte> taken;
    std::atomic<std::size_t> written{0};
    std::atomic<std::size_t> read{0};
};

} // namespace mirelon::hosting
