#include "tests/hosts/ardoursession.h"

#include "tests/support/temporaryfolder.h"

#include <glib.h>

#include <stdexcept>
#include <string_view>

namespace mirelon::test {
namespace {

constexpr auto audioFolder = "interchange/session/audiofiles";

// Ardour counts time in units that every usual sample rate divides.
constexpr long unitsPerSecond = 282240000;

// Replaces the one place where `old` stands.
void replaceOnce(std::string& text, const std::string& old, const std::string& now) {
    const auto place = text.find(old);
    if (place == std::string::npos || text.find(old, place + 1) != std::string::npos)
        throw std::runtime_error("not exactly once in the session: " + old);
    text.replace(place, old.size(), now);
}

// The part of `text` between two marks.
struct Part {
    std::size_t begin;
    std::size_t length;
};

Part between(const std::string& text, const std::string& before, const std::string& after) {
    const auto mark = text.find(before);
    const auto begin = mark + before.size();
    const auto end = mark == std::string::npos ? mark : text.find(after, begin);
    if (end == std::string::npos)
        throw std::runtime_error("not in the session: " + before + "…" + after);
    return {begin, end - begin};
}

Part chunkPart(const std::string& xml) {
    return between(xml, "<chunk program=\"0\">", "</chunk>");
}

} // namespace

std::string ArdourSession::description() const {
    return contentsOf(folder / "session.ardour");
}

void ArdourSession::describe(const std::string& xml) const {
    writeFile(folder / "session.ardour", xml);
}

void ArdourSession::putOnTrack(const Stereo& audio) const {
    writeStereo(folder / audioFolder / "material.wav", audio, rate);
    const std::string length = std::to_string(std::ssize(audio.left) * unitsPerSecond / rate);
    const auto source = [](int id, int channel) {
        return "<Source name=\"material.wav\" take-id=\"\" type=\"audio\" flags=\"\" id=\"" +
               std::to_string(id) + "\" natural-position=\"a0\" channel=\"" +
               std::to_string(channel) + "\" origin=\"\" gain=\"1\"/>";
    };
    const std::string region =
        R"(<Region name="material" muted="0" opaque="1" locked="0" video-locked="0" automatic="0")"
        R"( whole-file="0" import="0" external="0" hidden="0" position-locked="0")"
        R"( valid-transients="0" start="a0" length="a)" +
        length +
        R"(@a0" sync-position="a0" ancestral-start="a0" ancestral-length="a0@a0" stretch="1")"
        R"( shift="1" layering-index="0" envelope-active="0" default-fade-in="0")"
        R"( default-fade-out="0" fade-in-active="0" fade-out-active="0" scale-amplitude="1")"
        R"( id="900003" type="audio" first-edit="nothing" channels="2" source-0="900001")"
        R"( source-1="900002" master-source-0="900001" master-source-1="900002"/>)";

    std::string xml = description();
    replaceOnce(xml, "<Sources/>",
                "<Sources>" + source(900001, 0) + source(900002, 1) + "</Sources>");
    const Part playlist = between(xml, "<Playlist id=", "/>");
    xml.replace(playlist.begin + playlist.length, 2, ">" + region + "</Playlist>");
    replaceOnce(xml, "<Locations/>",
                R"(<Locations><Location id="900004" name="session" start="a0" end="a)" + length +
                    R"(" flags="IsSessionRange" locked="0" timestamp="0" cue="0"/></Locations>)");
    describe(xml);
}

std::vector<std::byte> ArdourSession::chunk() const {
    const std::string xml = description();
    const Part part = chunkPart(xml);
    gsize size = 0;
    guchar* bytes = g_base64_decode(xml.substr(part.begin, part.length).c_str(), &size);
    const auto* first = reinterpret_cast<const std::byte*>(bytes);
    std::vector<std::byte> chunk(first, first + size);
    g_free(bytes);
    return chunk;
}

void ArdourSession::setChunk(const std::vector<std::byte>& bytes) const {
    std::string xml = description();
    const Part part = chunkPart(xml);
    gchar* text = g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
    xml.replace(part.begin, part.length, text);
    g_free(text);
    describe(xml);
}

void ArdourSession::showPluginWindowAt(int x, int y, const std::string& type) const {
    std::string xml = description();
    const auto plugin = xml.find(" type=\"" + type + '"');
    const auto idBefore = [&xml, plugin](const std::string& tag) {
        const auto begin = xml.rfind(tag, plugin);
        if (plugin == std::string::npos || begin == std::string::npos)
            throw std::runtime_error("not in the session: the plug-in on its track");
        const auto value = xml.find(" id=\"", begin) + std::string_view(" id=\"").size();
        return xml.substr(value, xml.find('"', value) - value);
    };
    const std::string name = "P-" + idBefore("<Route ") + '-' + idBefore("<Processor ");
    replaceOnce(xml, "</Session>",
                "<Extra><UI><Window name=\"" + name + "\" visible=\"1\" x-off=\"" +
                    std::to_string(x) + "\" y-off=\"" + std::to_string(y) +
                    "\"/></UI></Extra></Session>");
    describe(xml);
}

Stereo ArdourSession::bounced(const std::string& name) const {
    return {readMono(folder / audioFolder / (name + "%L.wav")),
            readMono(folder / audioFolder / (name + "%R.wav"))};
}

} // namespace mirelon::test
