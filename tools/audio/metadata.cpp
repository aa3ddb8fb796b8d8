#include "tools/audio/metadata.h"

#include "tools/audio/virtualfile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

namespace mirelon::tools {

namespace {

struct TextKind {
    int kind;
    const char* name;
};
constexpr std::array textKinds{
    TextKind{SF_STR_TITLE, "title"},     TextKind{SF_STR_COPYRIGHT, "copyright"},
    TextKind{SF_STR_ARTIST, "artist"},   TextKind{SF_STR_COMMENT, "comment"},
    TextKind{SF_STR_DATE, "date"},       TextKind{SF_STR_ALBUM, "album"},
    TextKind{SF_STR_LICENSE, "license"}, TextKind{SF_STR_TRACKNUMBER, "track number"},
    TextKind{SF_STR_GENRE, "genre"},
};

// The library takes less than 16 KiB of either.
constexpr std::size_t longestText = 15U * 1024U;
using Broadcast = SF_BROADCAST_INFO_VAR(longestText);
using Cart = SF_CART_INFO_VAR(longestText);

constexpr std::size_t largestChunk = std::size_t{16} << 20U;

// Their content is about the recording and does not depend on its samples.
constexpr std::array<std::string_view, 8> descriptiveChunks{"iXML", "axml", "ID3 ", "id3 ",
                                                            "_PMX", "umid", "chna", "acid"};

// Sound, its layout, empty space, and what libsndfile hands over by itself.
constexpr std::array<std::string_view, 36> understoodChunks{
    "RIFF", "RF64", "riff", "WAVE", "wave", "ds64", "fmt ", "data", "fact", "PEAK", "JUNK", "junk",
    "PAD ", "FLLR", "bext", "cart", "cue ", "smpl", "inst", "FORM", "FVER", "COMM", "SSND", "MARK",
    "INST", "NAME", "AUTH", "(c) ", "ANNO", "COMT", "desc", "chan", "info", "free", "pakt", "kuki"};
constexpr std::array<std::string_view, 9> understoodInfo{"INAM", "ICOP", "ISFT", "IART", "ICMT",
                                                         "ICRD", "IPRD", "ITRK", "IGNR"};

template <typename List>
bool contains(const List& list, std::string_view item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

void addOnce(std::vector<std::string>& list, const std::string& item) {
    if (!contains(list, item))
        list.push_back(item);
}

std::string quoted(std::string_view id) {
    std::string text = "chunk \"";
    for (const char c : id)
        text += c >= 0x20 && c < 0x7F ? c : '?';
    return text + '"';
}

// A record whose last member is a text of the length that the record says.
template <typename Record, typename Length>
std::vector<std::byte> record(SNDFILE* file, int command, Length Record::*length,
                              std::size_t textStart) {
    const auto content = std::make_unique<Record>();
    if (sf_command(file, command, content.get(), sizeof(Record)) != SF_TRUE)
        return {};
    content.get()->*length = std::min<Length>(content.get()->*length, longestText);
    std::vector<std::byte> bytes(textStart + content.get()->*length);
    std::memcpy(bytes.data(), content.get(), bytes.size());
    return bytes;
}

std::vector<SF_CUE_POINT> cuesOf(SNDFILE* file) {
    std::uint32_t count = 0;
    if (sf_command(file, SFC_GET_CUE_COUNT, &count, sizeof count) != SF_TRUE || count == 0)
        return {};
    std::vector<SF_CUE_POINT> points(count);
    std::vector<std::byte> bytes(sizeof count + count * sizeof(SF_CUE_POINT));
    if (sf_command(file, SFC_GET_CUE, bytes.data(), static_cast<int>(bytes.size())) != SF_TRUE)
        return {};
    std::memcpy(points.data(), bytes.data() + sizeof count, count * sizeof(SF_CUE_POINT));
    return points;
}

// Names the entries of a list that libsndfile does not hand over.
void examineList(const std::vector<std::byte>& list, std::vector<std::string>& foreign) {
    const auto text = [&](std::size_t place) {
        std::string id(4, '\0');
        std::memcpy(id.data(), list.data() + place, id.size());
        return id;
    };
    if (list.size() < 4)
        return;
    const std::string type = text(0);
    if (type != "INFO" && type != "adtl") {
        addOnce(foreign, quoted("LIST") + " of " + type);
        return;
    }
    for (std::size_t place = 4; place + 8 <= list.size();) {
        const std::string id = text(place);
        std::uint32_t size = 0;
        std::memcpy(&size, list.data() + place + 4, sizeof size);
        if (type == "adtl" ? id != "labl" : !contains(understoodInfo, id))
            addOnce(foreign, quoted(id));
        place += 8 + std::size_t{size} + size % 2;
    }
}

void readChunks(SNDFILE* file, Metadata& metadata) {
    for (SF_CHUNK_ITERATOR* next = sf_get_chunk_iterator(file, nullptr); next != nullptr;
         next = sf_next_chunk_iterator(next)) {
        SF_CHUNK_INFO chunk{};
        // The library divides by the length, and reads no name without content.
        if (sf_get_chunk_size(next, &chunk) != SF_ERR_NO_ERROR || chunk.datalen == 0)
            continue;
        const std::size_t size = chunk.datalen;
        // For its name first: the sound is a chunk as well.
        std::array<std::byte, 8> start{};
        chunk.data = start.data();
        chunk.datalen = 1;
        sf_get_chunk_data(next, &chunk);
        const std::string id(chunk.id, std::min<std::size_t>(chunk.id_size, 4));
        if (id.size() < 4 || contains(understoodChunks, id))
            continue;
        const bool carried = contains(descriptiveChunks, id);
        if (size <= largestChunk && (carried || id == "LIST")) {
            std::vector<std::byte> data(size + 4); // the library rounds up
            chunk.datalen = static_cast<unsigned>(size);
            chunk.data = data.data();
            if (sf_get_chunk_data(next, &chunk) == SF_ERR_NO_ERROR) {
                data.resize(size);
                if (carried)
                    metadata.chunks.push_back({id, std::move(data)});
                else
                    examineList(data, metadata.foreign);
                continue;
            }
        }
        addOnce(metadata.foreign, quoted(id));
    }
}

// Values that say "not measured" in the fields of loudness.
constexpr std::int16_t unmeasured = 0x7FFF;

void leaveLoudnessOut(Metadata& metadata) {
    if (metadata.broadcast.empty())
        return;
    SF_BROADCAST_INFO info{};
    const std::size_t fixed = offsetof(SF_BROADCAST_INFO, coding_history);
    std::memcpy(&info, metadata.broadcast.data(), fixed);
    if (info.version < 2)
        return;
    for (std::int16_t* const field :
         {&info.loudness_value, &info.loudness_range, &info.max_true_peak_level,
          &info.max_momentary_loudness, &info.max_shortterm_loudness}) {
        if (*field != 0 && *field != unmeasured)
            metadata.loudnessLeftOut = true;
        *field = unmeasured;
    }
    std::memcpy(metadata.broadcast.data(), &info, fixed);
}

bool isPlainStereo(const std::vector<int>& map) {
    const auto is = [&](int left, int right) { return map[0] == left && map[1] == right; };
    return is(SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT) ||
           is(SF_CHANNEL_MAP_FRONT_LEFT, SF_CHANNEL_MAP_FRONT_RIGHT);
}

bool hasNames(const std::vector<SF_CUE_POINT>& cues) {
    return std::any_of(cues.begin(), cues.end(),
                       [](const SF_CUE_POINT& cue) { return cue.name[0] != '\0'; });
}

} // namespace

std::size_t Metadata::bytes() const {
    std::size_t sum = broadcast.size() + cart.size() + cues.size() * sizeof(SF_CUE_POINT) +
                      (instrument ? sizeof(SF_INSTRUMENT) : 0);
    for (const auto& [kind, text] : texts)
        sum += text.size() + 16;
    for (const Chunk& chunk : chunks)
        sum += chunk.data.size() + 16;
    return sum;
}

Metadata readMetadata(SNDFILE* file, const SF_INFO& info) {
    Metadata metadata;
    for (const auto& [kind, name] : textKinds) {
        if (const char* const text = sf_get_string(file, kind))
            metadata.texts.emplace_back(kind, text);
    }
    metadata.broadcast = record(file, SFC_GET_BROADCAST_INFO, &Broadcast::coding_history_size,
                                offsetof(Broadcast, coding_history));
    leaveLoudnessOut(metadata);
    metadata.cart = record(file, SFC_GET_CART_INFO, &Cart::tag_text_size, offsetof(Cart, tag_text));
    metadata.cues = cuesOf(file);
    SF_INSTRUMENT instrument{};
    if (sf_command(file, SFC_GET_INSTRUMENT, &instrument, sizeof instrument) == SF_TRUE)
        metadata.instrument = instrument;
    std::array<int, 2> map{};
    if (info.channels == 2 &&
        sf_command(file, SFC_GET_CHANNEL_MAP_INFO, map.data(), sizeof map) == SF_TRUE)
        metadata.channelMap.assign(map.begin(), map.end());
    return metadata;
}

void addChunks(Metadata& metadata, SNDFILE* file, const std::vector<std::string>& names) {
    readChunks(file, metadata);
    for (const std::string& name : names) {
        const auto carried = [&](const Metadata::Chunk& chunk) { return chunk.id == name; };
        if (name != "LIST" && !contains(understoodChunks, name) &&
            std::none_of(metadata.chunks.begin(), metadata.chunks.end(), carried))
            addOnce(metadata.foreign, name.size() == 4 ? quoted(name) : name);
    }
}

void writeMetadata(SNDFILE* file, const Metadata& metadata) {
    const auto set = [file](int command, const std::vector<std::byte>& bytes) {
        std::vector<std::byte> copy = bytes;
        if (!copy.empty())
            sf_command(file, command, copy.data(), static_cast<int>(copy.size()));
    };
    for (const auto& [kind, text] : metadata.texts)
        sf_set_string(file, kind, text.c_str());
    set(SFC_SET_BROADCAST_INFO, metadata.broadcast);
    set(SFC_SET_CART_INFO, metadata.cart);
    if (!metadata.cues.empty()) {
        const auto count = static_cast<std::uint32_t>(metadata.cues.size());
        std::vector<std::byte> bytes(sizeof count + count * sizeof(SF_CUE_POINT));
        std::memcpy(bytes.data(), &count, sizeof count);
        std::memcpy(bytes.data() + sizeof count, metadata.cues.data(),
                    count * sizeof(SF_CUE_POINT));
        set(SFC_SET_CUE, bytes);
    }
    if (metadata.instrument) {
        SF_INSTRUMENT instrument = *metadata.instrument;
        sf_command(file, SFC_SET_INSTRUMENT, &instrument, sizeof instrument);
    }
    if (!metadata.channelMap.empty()) {
        std::vector<int> map = metadata.channelMap;
        sf_command(file, SFC_SET_CHANNEL_MAP_INFO, map.data(),
                   static_cast<int>(map.size() * sizeof(int)));
    }
    for (const Metadata::Chunk& chunk : metadata.chunks) {
        std::vector<std::byte> data = chunk.data;
        SF_CHUNK_INFO info{};
        std::copy_n(chunk.id.begin(), 4, info.id);
        info.id_size = 4;
        info.datalen = static_cast<unsigned>(data.size());
        info.data = data.data();
        sf_set_chunk(file, &info);
    }
}

std::vector<std::string> lostMetadata(const Metadata& metadata, int format, int sampleRate) {
    MemoryFile memory;
    SF_INFO info{};
    info.format = format;
    info.channels = 2;
    info.samplerate = sampleRate;
    if (const SoundHandle file = memory.open(SFM_WRITE, info)) {
        writeMetadata(file.get(), metadata);
        const std::array<float, 512> silence{};
        sf_writef_float(file.get(), silence.data(), silence.size() / 2);
    }
    Metadata kept;
    if (const SoundHandle file = memory.open(SFM_READ, info)) {
        kept = readMetadata(file.get(), info);
        addChunks(kept, file.get(), {});
    }

    std::vector<std::string> lost;
    for (const auto& [kind, text] : metadata.texts) {
        const auto same = [kind = kind](const auto& other) { return other.first == kind; };
        if (std::none_of(kept.texts.begin(), kept.texts.end(), same))
            lost.emplace_back(
                std::find_if(textKinds.begin(), textKinds.end(),
                             [kind = kind](const TextKind& each) { return each.kind == kind; })
                    ->name);
    }
    if (!metadata.broadcast.empty() && kept.broadcast.empty())
        lost.emplace_back("broadcast information (bext)");
    else if (metadata.loudnessLeftOut)
        lost.emplace_back("loudness measured before (in bext)");
    if (!metadata.cart.empty() && kept.cart.empty())
        lost.emplace_back("radio traffic data (cart)");
    if (kept.cues.size() < metadata.cues.size())
        lost.push_back(std::to_string(metadata.cues.size()) + " cue points");
    else if (hasNames(metadata.cues) && !hasNames(kept.cues))
        lost.emplace_back("names of cue points");
    if (metadata.instrument && !kept.instrument)
        lost.emplace_back("instrument data");
    if (!metadata.channelMap.empty() && !isPlainStereo(metadata.channelMap) &&
        kept.channelMap != metadata.channelMap)
        lost.emplace_back("channel map");
    for (const Metadata::Chunk& chunk : metadata.chunks) {
        const auto same = [&](const Metadata::Chunk& other) { return other.id == chunk.id; };
        if (std::none_of(kept.chunks.begin(), kept.chunks.end(), same))
            lost.push_back(quoted(chunk.id));
    }
    lost.insert(lost.end(), metadata.foreign.begin(), metadata.foreign.end());
    return lost;
}

} // namespace mirelon::tools
