// Bytes that libsndfile takes for a file.
#pragma once

#include "tools/audio/soundhandle.h"

#include <cstddef>
#include <span>
#include <vector>

namespace mirelon::tools {

// Must outlive the handle that was opened on it.
class VirtualFile {
  public:
    VirtualFile() = default;
    virtual ~VirtualFile() = default;
    VirtualFile(const VirtualFile&) = delete;
    VirtualFile& operator=(const VirtualFile&) = delete;

    // Null on failure, of which libraryMessage(nullptr) tells.
    SoundHandle open(int mode, SF_INFO& info);

    virtual sf_count_t length() const = 0;

  protected:
    // Where the library reads or writes next.
    sf_count_t at() const noexcept { return position; }

    // Both return how many bytes were done; fewer than asked is the end or a
    // failure. The position moves by itself.
    virtual std::size_t readAt(sf_count_t position, std::span<std::byte> bytes) = 0;
    virtual std::size_t writeAt(sf_count_t position, std::span<const std::byte> bytes) = 0;

  private:
    static SF_VIRTUAL_IO functions();

    sf_count_t position = 0;
};

class MemoryFile : public VirtualFile {
  public:
    sf_count_t length() const override { return static_cast<sf_count_t>(content.size()); }
    const std::vector<std::byte>& bytes() const noexcept { return content; }

  protected:
    std::size_t readAt(sf_count_t position, std::span<std::byte> bytes) override;
    std::size_t writeAt(sf_count_t position, std::span<const std::byte> bytes) override;

  private:
    std::vector<std::byte> content;
};

} // namespace mirelon::tools
