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

void writeSession(const PluginEntry& plugin, const std::filesystem::path& file) {
    const std::string folder = file.parent_path();
    writeFile(file, R"(<!DOCTYPE qtractorSession>
<session version="Qtractor" name="session">
 <properties>
  <directory>)" + folder +
                        R"(</directory>
  <sample-rate>)" + std::to_string(JackServer::rate) +
                        R"(</sample-rate>
 </properties>
 <devices>
  <audio-engine>
   <audio-bus name="Master" mode="duplex">
    <channels>2</channels>
    <auto-connect>0</auto-connect>
    <output-plugins>
     <plugin type=")" + plugin.type +
                        R"(">
      <filename>)" + plugin.file +
                        R"(</filename>
      <index>0</index>
      <label>)" + plugin.label +
                        R"(</label>
      <unique-id>)" + plugin.uniqueId +
                        R"(</unique-id>
      <activated>1</activated>
     </plugin>
    </output-plugins>
   </audio-bus>
  </audio-engine>
 </devices>
</session>
)");
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
