#include "tools/audio/soundextent.h"

#include <algorithm>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace mirelon::tools {

namespace {

class ByteFile {
  public:
    explicit ByteFile(int descriptor_)
        : descriptor(descriptor_) {
        struct stat status {};
        if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
            size = static_cast<std::uint64_t>(status.st_size);
    }

    std::uint64_t length() const noexcept { return size; }

    // Zeros stand for what lies behind the end.
    std::string text(std::uint64_t place, std::size_t count) const {
        std::string bytes(count, '\0');
        if (place < size && pread(descriptor, bytes.data(), count, static_cast<off_t>(place)) < 0)
            bytes.assign(count, '\0');
        return bytes;
    }
    std::uint64_t bigEndian(std::uint64_t place, std::size_t count) const {
        std::uint64_t value = 0;
        for (const char byte : text(place, count))
            value = value << 8U | static_cast<unsigned char>(byte);
        return value;
    }
    std::uint64_t littleEndian(std::uint64_t place, std::size_t count) const {
        std::string bytes = text(place, count);
        std::reverse(bytes.begin(), bytes.end());
        std::uint64_t value = 0;
        for (const char byte : bytes)
            value = value << 8U | static_cast<unsigned char>(byte);
        return value;
    }

  private:
    int descriptor;
    std::uint64_t size = 0;
};

// One way to lay chunks out behind each other.
struct Layout {
    std::uint64_t first; // place of the first chunk
    std::size_t idBytes; // of which the first four are its name
    std::size_t sizeBytes;
    bool bigEndian;
    bool sizeCountsHeader;
    std::uint64_t alignment;
    std::string_view sound; // name of the chunk with the samples
    std::uint64_t leading;  // bytes in that chunk before the samples
};

constexpr Layout riff{12, 4, 4, false, false, 2, "data", 0};
constexpr Layout bigEndianRiff{12, 4, 4, true, false, 2, "data", 0};
constexpr Layout wave64{40, 16, 8, false, true, 8, "data", 0};
constexpr Layout aiff{12, 4, 4, true, false, 2, "SSND", 8};
constexpr Layout coreAudio{8, 4, 8, true, false, 1, "data", 4};

constexpr std::uint64_t allOnes32 = 0xFFFF'FFFFU;

// What programs write that do not know the length yet: nothing, or about the most
// that 31 or 32 bits hold.
bool leavesOpen(std::uint64_t size, const Layout& layout) {
    if (layout.sizeBytes == 8)
        return size > (std::uint64_t{1} << 60U);
    return size == 0 || (size >= 0x7FFF'F000U && size <= 0x8000'0000U) || size >= 0xFFFF'FF00U;
}

std::optional<Layout> layoutOf(const ByteFile& file) {
    const std::string start = file.text(0, 12);
    const std::string_view kind = std::string_view(start).substr(0, 4);
    const std::string_view form = std::string_view(start).substr(8, 4);
    if ((kind == "RIFF" || kind == "RF64" || kind == "BW64") && form == "WAVE")
        return riff;
    if (kind == "RIFX" && form == "WAVE")
        return bigEndianRiff;
    if (kind == "FORM" && (form == "AIFF" || form == "AIFC"))
        return aiff;
    if (kind == "riff")
        return wave64;
    if (kind == "caff")
        return coreAudio;
    return std::nullopt;
}

std::optional<SoundExtent> extentOfChunks(const ByteFile& file, const Layout& layout) {
    SoundExtent extent;
    bool found = false;
    std::uint64_t longSize = 0; // RF64's
    const std::uint64_t header = layout.idBytes + layout.sizeBytes;
    for (std::uint64_t place = layout.first; place + header <= file.length();) {
        const std::string id = file.text(place, 4);
        std::uint64_t size = layout.bigEndian
                                 ? file.bigEndian(place + layout.idBytes, layout.sizeBytes)
                                 : file.littleEndian(place + layout.idBytes, layout.sizeBytes);
        if (layout.sizeCountsHeader)
            size -= std::min(size, header);
        const std::uint64_t content = place + header;
        const std::uint64_t rest = file.length() - content;
        extent.chunks.push_back(id);
        if (id == "ds64")
            longSize = file.littleEndian(content + 8, 8);
        if (id == layout.sound && !found) {
            found = true;
            if (longSize != 0 && size == allOnes32)
                size = longSize;
            else if (leavesOpen(size, layout))
                size = rest;
            const std::uint64_t leading = layout.leading;
            extent.present = std::min(size, rest) - std::min({leading, size, rest});
            extent.promised = size - std::min(leading, size);
        }
        if (size > rest)
            break;
        place = content + (size + layout.alignment - 1) / layout.alignment * layout.alignment;
    }
    return found ? std::optional(extent) : std::nullopt;
}

// AU has one header and no chunks.
std::optional<SoundExtent> extentOfAu(const ByteFile& file, bool bigEndian) {
    const auto word = [&](std::uint64_t place) {
        return bigEndian ? file.bigEndian(place, 4) : file.littleEndian(place, 4);
    };
    const std::uint64_t begin = word(4);
    const std::uint64_t size = word(8);
    SoundExtent extent;
    extent.present = file.length() - std::min(begin, file.length());
    extent.promised = size == allOnes32 ? extent.present : size;
    return extent;
}

} // namespace

std::optional<SoundExtent> soundExtent(int descriptor) {
    const ByteFile file(descriptor);
    if (const std::string start = file.text(0, 4); start == ".snd" || start == "dns.")
        return extentOfAu(file, start == ".snd");
    const std::optional<Layout> layout = layoutOf(file);
    return layout ? extentOfChunks(file, *layout) : std::nullopt;
}

} // namespace mirelon::tools
