#include "tools/audio/outputformat.h"

#include "tools/commanderror.h"
#include "tools/nearestname.h"

#include <array>
#include <sndfile.h>
#include <string_view>

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

} // namespace

int outputFormat(const std::filesystem::path& out, int inputFormat, int sampleRate) {
    std::string name = out.extension().string();
    if (name.size() < 2)
        return inputFormat;
    name.erase(0, 1);
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

std::string formatName(int format) {
    return libraryName(format & SF_FORMAT_TYPEMASK) + ", " +
           libraryName(format & SF_FORMAT_SUBMASK);
}

} // namespace mirelon::tools
