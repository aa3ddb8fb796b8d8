#include "tools/audio/outputformat.h"

#include "tools/commanderror.h"
#include "tools/nearestname.h"

#include <algorithm>
#include <array>
#include <sndfile.h>
#include <string_view>
#include <utility>

namespace mirelon::tools {

namespace {

struct Extension {
    std::string_view name;
    int format; // with a subtype where the extension says it
};

constexpr std::array extensions{
    Extension{"wav", SF_FORMAT_WAV},
    Extension{"flac", SF_FORMAT_FLAC},
    Extension{"ogg", SF_FORMAT_OGG},
    Extension{"oga", SF_FORMAT_OGG},
    Extension{"opus", SF_FORMAT_OGG | SF_FORMAT_OPUS},
    Extension{"aiff", SF_FORMAT_AIFF},
    Extension{"aif", SF_FORMAT_AIFF},
    Extension{"aifc", SF_FORMAT_AIFF},
    Extension{"caf", SF_FORMAT_CAF},
    Extension{"w64", SF_FORMAT_W64},
    Extension{"rf64", SF_FORMAT_RF64},
    Extension{"au", SF_FORMAT_AU},
    Extension{"snd", SF_FORMAT_AU},
    Extension{"mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
};

int kindOf(int format) {
    const int kind = format & SF_FORMAT_TYPEMASK;
    return kind == SF_FORMAT_WAVEX || kind == SF_FORMAT_RF64 ? SF_FORMAT_WAV : kind;
}

bool writable(int format, int sampleRate) {
    SF_INFO info{};
    info.format = format;
    info.channels = 2;
    info.samplerate = sampleRate;
    return sf_format_check(&info) != 0;
}

const Extension* findExtension(std::string_view name) {
    for (const Extension& extension : extensions) {
        if (sameName(extension.name, name))
            return &extension;
    }
    return nullptr;
}

std::string libraryName(int format) {
    SF_FORMAT_INFO info{};
    info.format = format;
    if (sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) != 0 || info.name == nullptr)
        return "unknown";
    // Without the explanation that some names carry: "OGG (OGG Container format)".
    const std::string_view name = info.name;
    return std::string(name.substr(0, name.find(" (")));
}

int formatOfKind(const std::filesystem::path& out, const std::string& name, int inputFormat,
                 int sampleRate) {
    const Extension* const extension = findExtension(name);
    if (extension == nullptr) {
        std::string known;
        for (const Extension& each : extensions)
            known.append(known.empty() ? "" : ", ").append(each.name);
        throw CommandError(out.string() + ": no audio format is called \"" + name +
                           "\", known are " + known);
    }
    const int kind = extension->format & SF_FORMAT_TYPEMASK;
    int subtype = extension->format & SF_FORMAT_SUBMASK;
    const int inputSubtype = inputFormat & SF_FORMAT_SUBMASK;
    // .rf64 asks for that very kind, .wav is any of the family.
    const bool sameKind = kind == SF_FORMAT_RF64 ? (inputFormat & SF_FORMAT_TYPEMASK) == kind
                                                 : kindOf(inputFormat) == kindOf(kind);
    if (sameKind && (subtype == 0 || subtype == inputSubtype))
        return inputFormat;
    if (subtype != 0)
        return extension->format;
    for (const int candidate : {inputSubtype, +SF_FORMAT_FLOAT, +SF_FORMAT_PCM_24,
                                +SF_FORMAT_VORBIS, +SF_FORMAT_PCM_16}) {
        subtype = candidate;
        if (writable(kind | subtype, sampleRate))
            break;
    }
    return kind | subtype;
}

int withBits(const std::filesystem::path& out, int format, const std::string& bits,
             int sampleRate) {
    // Integers of 8 bits have a sign in some kinds and none in others.
    constexpr std::array<std::pair<std::string_view, int>, 7> subtypes{
        {{"8", SF_FORMAT_PCM_U8},
         {"8", SF_FORMAT_PCM_S8},
         {"16", SF_FORMAT_PCM_16},
         {"24", SF_FORMAT_PCM_24},
         {"32", SF_FORMAT_PCM_32},
         {"float", SF_FORMAT_FLOAT},
         {"double", SF_FORMAT_DOUBLE}}};
    for (const auto& [name, subtype] : subtypes) {
        const int candidate = (format & ~SF_FORMAT_SUBMASK) | subtype;
        if (name == bits && writable(candidate, sampleRate))
            return candidate;
    }
    throw CommandError(out.string() + ": " + libraryName(format & SF_FORMAT_TYPEMASK) +
                       " does not take samples of " + bits + (bits.size() > 2 ? "" : " bits"));
}

} // namespace

std::vector<std::string> formatNames() {
    std::vector<std::string> names(extensions.size());
    std::transform(extensions.begin(), extensions.end(), names.begin(),
                   [](const Extension& each) { return std::string(each.name); });
    return names;
}

int outputFormat(const std::filesystem::path& out, int inputFormat, int sampleRate,
                 const FormatRequest& request) {
    std::string name = request.kind;
    if (name.empty() && out.extension().string().size() >= 2)
        name = out.extension().string().substr(1);
    const int chosen =
        name.empty() ? inputFormat : formatOfKind(out, name, inputFormat, sampleRate);
    if (request.bits.empty())
        return chosen;
    return withBits(out, chosen, request.bits, sampleRate);
}

int integerBits(int format) {
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
        return 8;
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_ALAC_16:
        return 16;
    case SF_FORMAT_ALAC_20:
        return 20;
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_ALAC_24:
        return 24;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_32:
        return 32;
    default:
        return 0;
    }
}

int bytesPerSample(int format) {
    switch (format & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_FLAC:
    case SF_FORMAT_MPEG:
    case SF_FORMAT_OGG:
        return 0;
    default:
        break;
    }
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
        return 1;
    case SF_FORMAT_PCM_16:
        return 2;
    case SF_FORMAT_PCM_24:
        return 3;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_FLOAT:
        return 4;
    case SF_FORMAT_DOUBLE:
        return 8;
    default:
        return 0;
    }
}

std::string formatName(int format) {
    return libraryName(format & SF_FORMAT_TYPEMASK) + ", " +
           libraryName(format & SF_FORMAT_SUBMASK);
}

} // namespace mirelon::tools
