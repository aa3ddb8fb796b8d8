#include "tools/audio/tagnames.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <string_view>
#include <unistd.h>

namespace mirelon::tools {

namespace {

constexpr std::array<std::string_view, 11> readTags{
    "TITLE", "COPYRIGHT", "ENCODER", "SOFTWARE", "ARTIST",     "COMMENT",
    "DATE",  "ALBUM",     "LICENSE", "GENRE",    "TRACKNUMBER"};

constexpr std::size_t mostTagBytes = std::size_t{1} << 20U;

std::string bytesAt(int descriptor, std::uint64_t place, std::size_t count) {
    std::string bytes(count, '\0');
    const ssize_t got = pread(descriptor, bytes.data(), count, static_cast<off_t>(place));
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return bytes;
}

std::uint32_t littleEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;)
        value = value << 8U | static_cast<unsigned char>(bytes[i]);
    return value;
}

// A vendor's name and a list of NAME=VALUE, each after its length. Stops where
// it is cut off.
void addUnread(std::string_view comments, std::vector<std::string>& names) {
    const auto take = [&comments]() -> std::string_view {
        if (comments.size() < 4)
            return {};
        const std::size_t length =
            std::min<std::size_t>(littleEndian(comments), comments.size() - 4);
        const std::string_view text = comments.substr(4, length);
        comments.remove_prefix(4 + length);
        return text;
    };
    take();
    if (comments.size() < 4)
        return;
    std::uint32_t count = littleEndian(comments);
    comments.remove_prefix(4);
    for (; count > 0 && !comments.empty(); --count) {
        const std::string_view text = take();
        std::string name(text.substr(0, text.find('=')));
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        if (!name.empty() && std::find(readTags.begin(), readTags.end(), name) == readTags.end() &&
            std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
}

std::vector<std::string> inFlac(int descriptor) {
    enum Block : unsigned { application = 2, comment = 4, cueSheet = 5, picture = 6 };
    std::vector<std::string> names;
    for (std::uint64_t place = 4;;) {
        const std::string head = bytesAt(descriptor, place, 4);
        if (head.size() < 4)
            break;
        const auto byte = [&head](std::size_t i) {
            return static_cast<std::uint32_t>(static_cast<unsigned char>(head[i]));
        };
        const std::uint32_t length = byte(1) << 16U | byte(2) << 8U | byte(3);
        switch (byte(0) & 0x7FU) {
        case application:
            names.emplace_back("application data of " + bytesAt(descriptor, place + 4, 4));
            break;
        case comment:
            addUnread(bytesAt(descriptor, place + 4, length), names);
            break;
        case cueSheet:
            names.emplace_back("cue sheet");
            break;
        case picture:
            names.emplace_back("picture");
            break;
        default:
            break;
        }
        if ((byte(0) & 0x80U) != 0)
            break;
        place += 4 + std::uint64_t{length};
    }
    return names;
}

// The comments are the second packet; those of its first page are looked at.
std::vector<std::string> inOgg(int descriptor) {
    std::vector<std::string> names;
    const std::string start = bytesAt(descriptor, 0, mostTagBytes);
    for (const std::string_view mark :
         {std::string_view("\x03vorbis"), std::string_view("OpusTags")}) {
        const std::size_t found = start.find(mark);
        if (found == std::string::npos)
            continue;
        std::string_view comments = std::string_view(start).substr(found + mark.size());
        addUnread(comments.substr(0, comments.find("OggS")), names);
    }
    return names;
}

} // namespace

std::vector<std::string> unreadTags(int descriptor) {
    const std::string kind = bytesAt(descriptor, 0, 4);
    if (kind == "fLaC")
        return inFlac(descriptor);
    if (kind == "OggS")
        return inOgg(descriptor);
    return {};
}

} // namespace mirelon::tools
