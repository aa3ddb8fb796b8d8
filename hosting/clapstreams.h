// The streams through which a CLAP plug-in saves and loads its state.
#pragma once

#include <algorithm>
#include <clap/stream.h>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace mirelon::hosting {

inline constexpr std::size_t anyNumberOfBytes = std::numeric_limits<std::size_t>::max();

// Takes at most so many bytes at a time and altogether; then it fails.
class ClapOutputStream {
  public:
    explicit ClapOutputStream(std::size_t atOnce = anyNumberOfBytes,
                              std::size_t altogether = anyNumberOfBytes)
        : most(atOnce)
        , room(altogether) {}
    ClapOutputStream(const ClapOutputStream&) = delete;
    ClapOutputStream& operator=(const ClapOutputStream&) = delete;

    const std::vector<std::byte>& bytes() const noexcept { return written; }
    const clap_ostream* stream() const noexcept { return &record; }

  private:
    std::int64_t write(const std::byte* data, std::size_t size) {
        const std::size_t count = std::min({size, most, room - written.size()});
        if (count == 0)
            return -1;
        written.insert(written.end(), data, data + count);
        return static_cast<std::int64_t>(count);
    }

    std::size_t most;
    std::size_t room;
    std::vector<std::byte> written;
    clap_ostream record{this,
                        [](const clap_ostream* stream, const void* buffer, std::uint64_t size) {
                            return static_cast<ClapOutputStream*>(stream->ctx)
                                ->write(static_cast<const std::byte*>(buffer), size);
                        }};
};

// What a stream says when there is nothing more in it.
enum class StreamEnd { reached, failed };

// Gives at most so many bytes at a time.
class ClapInputStream {
  public:
    explicit ClapInputStream(std::span<const std::byte> bytes,
                             std::size_t atOnce = anyNumberOfBytes,
                             StreamEnd end = StreamEnd::reached)
        : left(bytes)
        , most(atOnce)
        , end(end) {}
    ClapInputStream(const ClapInputStream&) = delete;
    ClapInputStream& operator=(const ClapInputStream&) = delete;

    const clap_istream* stream() const noexcept { return &record; }

  private:
    std::int64_t read(std::byte* data, std::size_t size) {
        const std::size_t count = std::min({size, most, left.size()});
        if (left.empty() && size > 0 && end == StreamEnd::failed)
            return -1;
        std::copy_n(left.begin(), count, data);
        left = left.subspan(count);
        return static_cast<std::int64_t>(count);
    }

    std::span<const std::byte> left;
    std::size_t most;
    StreamEnd end;
    clap_istream record{this, [](const clap_istream* stream, void* buffer, std::uint64_t size) {
                            return static_cast<ClapInputStream*>(stream->ctx)
                                ->read(static_cast<std::byte*>(buffer), size);
                        }};
};

} // namespace mirelon::hosting
