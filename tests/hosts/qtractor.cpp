#include "tests/hosts/qtractor.h"

#include "tests/hosts/jackserver.h"

#include <chrono>
#include <regex>

namespace mirelon::test::qtractor {
namespace {

constexpr auto programFile = "/usr/bin/qtractor";
constexpr auto scannerFile = "/usr/lib/x86_64-linux-gnu/qtractor/qtractor_plugin_scan";

} // namespace

bool isInstalled() {
    return isExecutable(programFile) && isExecutable(scannerFile);
}

std::string program() {
    return programFile;
}

Environment variables() {
    return {{"LD_PRELOAD", MIRELON_SEQUENCER_FILE}};
}

Outcome scan(const HostHome& home, const std::string& format) {
    // The scanner reads the names of files from its standard input.
    return home.run(
        {"/bin/sh", "-c", "echo \"$2:$1\" | exec \"$0\"", scannerFile, home.plugin(), format},
        std::chrono::seconds(30));
}

PluginEntry vst(const HostHome& home) {
    return {"VST", home.plugin(), "Dravik_Mirelon", "1299336302"};
}

PluginEntry clap(const HostHome& home) {
    return {"CLAP", home.plugin(), "Dravik_Mirelon", "0"};
}

PluginEntry lv2(const std::string& uri) {
    return {"LV2", uri, "Dravik Mirelon", "0"};
}

namespace {

// The plug-in's element, with something more in it.
std::string described(const PluginEntry& plugin, const std::string& more = {}) {
    return "<plugin type=\"" + plugin.type + "\"><filename>" + plugin.file +
           "</filename><index>0</index><label>" + plugin.label + "</label><unique-id>" +
           plugin.uniqueId + "</unique-id><activated>1</activated>" + more + "</plugin>\n";
}

// A session whose master bus and tracks have this in them.
std::string sessionWith(const std::string& folder, const std::string& outputPlugins,
                        const std::string& tracks) {
    return R"(<!DOCTYPE qtractorSession>
<session version="Qtractor" name="session">
 <properties>
  <directory>)" +
           folder + R"(</directory>
  <sample-rate>)" +
           std::to_string(JackServer::rate) + R"(</sample-rate>
 </properties>
 <devices>
  <audio-engine>
   <audio-bus name="Master" mode="duplex">
    <channels>2</channels>
    <auto-connect>0</auto-connect>
    <output-plugins>
)" + outputPlugins +
           R"(    </output-plugins>
   </audio-bus>
  </audio-engine>
 </devices>
 <tracks>
)" + tracks +
           R"( </tracks>
</session>
)";
}

} // namespace

void writeSession(const PluginEntry& plugin, const std::filesystem::path& file) {
    writeFile(file, sessionWith(file.parent_path(), described(plugin), {}));
}

void writeTrackSession(const PluginEntry& plugin, const AutomatedParameter& automated,
                       const std::filesystem::path& file) {
    const std::string place = "index=\"" + std::to_string(automated.index) + "\"";
    const std::string curves =
        "<curve-file><curve-items><curve-item name=\"" + automated.name + "\" " + place +
        " mode=\"Hold\"><type>NONREGPARAM</type><channel>0</channel><param>0</param>"
        "<mode>Hold</mode><process>1</process><capture>" +
        (automated.capture ? "1" : "0") +
        "</capture><locked>0</locked><logarithmic>0</logarithmic></curve-item></curve-items>"
        "<filename>" +
        automated.curve.filename().string() + "</filename><current>" +
        std::to_string(automated.index) + "</current></curve-file>";
    writeFile(file, sessionWith(file.parent_path(), {},
                                R"(  <track name="stereo" type="audio">
   <properties>
    <input-bus>Master</input-bus>
    <output-bus>Master</output-bus>
   </properties>
   <plugins>
)" + described(plugin, curves) + R"(   </plugins>
  </track>
)"));
}

std::filesystem::path curveFileOf(const std::filesystem::path& session) {
    static const std::regex element(R"re(<filename>([^<]*\.mid)</filename>)re");
    const std::string text = contentsOf(session);
    std::smatch match;
    return std::regex_search(text, match, element) ? session.parent_path() / match[1].str()
                                                   : std::filesystem::path{};
}

std::map<std::string, float> parametersIn(const std::filesystem::path& session) {
    // It writes the attributes in any order.
    static const std::regex line(R"re(<param [^>]*name="([^"]*)"[^>]*>([^<]*)</param>)re");
    const std::string text = contentsOf(session);
    std::map<std::string, float> parameters;
    for (std::sregex_iterator match(text.begin(), text.end(), line), end; match != end; ++match)
        parameters[(*match)[1]] = std::stof((*match)[2]);
    return parameters;
}

} // namespace mirelon::test::qtractor
