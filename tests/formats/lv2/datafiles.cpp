#include "tests/formats/lv2/datafiles.h"

#include "formats/lv2/names.h"
#include "formats/lv2/portvalues.h"
#include "presetsystem/presetrecord.h"
#include "processor/core/factorypresets.h"

#include <array>
#include <charconv>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace mirelon::test::lv2data {

namespace {

using namespace mirelon::lv2;

constexpr std::string_view prefixes =
    R"(@prefix atom: <http://lv2plug.in/ns/ext/atom#> .
@prefix doap: <http://usefulinc.com/ns/doap#> .
@prefix foaf: <http://xmlns.com/foaf/0.1/> .
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix opts: <http://lv2plug.in/ns/ext/options#> .
@prefix pg: <http://lv2plug.in/ns/ext/port-groups#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
@prefix rdf: <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .
@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .
@prefix rsz: <http://lv2plug.in/ns/ext/resize-port#> .
@prefix state: <http://lv2plug.in/ns/ext/state#> .
@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .
@prefix units: <http://lv2plug.in/ns/extensions/units#> .
@prefix urid: <http://lv2plug.in/ns/ext/urid#> .

)";

// The declarations that `body` uses, and the body.
std::string document(const std::string& body) {
    std::string text;
    std::istringstream lines{std::string(prefixes)};
    for (std::string line; std::getline(lines, line);) {
        const auto colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        const std::string name = line.substr(8, colon - 8) + ':';
        if (body.find(' ' + name) != std::string::npos ||
            body.find('\t' + name) != std::string::npos)
            text += line + '\n';
    }
    return text + '\n' + body;
}

// Readers of Turtle want a point in a decimal.
std::string number(float value) {
    std::array<char, 64> text{};
    const auto [end, failure] =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (failure != std::errc{})
        throw std::logic_error("no such number");
    std::string result(text.data(), end);
    return result.find('.') == std::string::npos ? result + ".0" : result;
}

// The shortest number with which the port gives the parameter this very value.
std::string portNumber(int index, float value) {
    const auto exact = static_cast<double>(portValueOf(index, value));
    for (int decimals = 0; decimals <= 9; ++decimals) {
        std::array<char, 64> text{};
        const auto [end, failure] = std::to_chars(text.data(), text.data() + text.size(), exact,
                                                  std::chars_format::fixed, decimals);
        float shown = 0.0F;
        if (failure == std::errc{} && std::from_chars(text.data(), end, shown).ec == std::errc{} &&
            valueOfPort(index, shown) == value)
            return number(shown);
    }
    throw std::logic_error("no number gives the value");
}

struct Description {
    std::string_view name;
    std::string_view comment;
};

// What panels call the parameters, and what they do.
constexpr std::array<Description, kNumParams> descriptions{{
    {"Width", "Gain of the side signal; 100 % leaves it as it is"},
    {"Gain", "Gain of the input"},
    {"Balance", "Balance of the output, -50 right to 50 left"},
    {"Stability", "Weights of the side signal, -50 right to 50 left"},
    {"Center Position", "Place of the centre signal, -50 right to 50 left"},
    {"Process", "Off passes the input on untouched"},
    {"Phase", "Swaps the channels"},
    {"Invert Left", "Inverts the left input"},
    {"Invert Right", "Inverts the right input"},
}};

bool isPosition(int index) {
    return index == kParamBalance || index == kParamStability || index == kParamCenterPos;
}

// One property of a port.
std::string line(const std::string& text) {
    return "\t\t" + text + " ;\n";
}

std::string portHead(std::uint32_t port, std::string_view types, std::string_view name) {
    return line("a " + std::string(types)) + line("lv2:index " + std::to_string(port)) +
           line("lv2:symbol \"" + std::string(portSymbols[port]) + '"') +
           line("lv2:name \"" + std::string(name) + '"');
}

std::string messagePort(std::uint32_t port, std::string_view direction, std::string_view name) {
    return portHead(port, std::string(direction) + " , atom:AtomPort", name) +
           line("atom:bufferType atom:Sequence") +
           line("atom:supports <" + std::string(getClassUri) + "> , <" + bankClassUri + ">") +
           line("lv2:designation lv2:control") + line("lv2:portProperty lv2:connectionOptional") +
           line("rsz:minimumSize " + std::to_string(messageRoom));
}

std::string audioPort(std::uint32_t port, std::string_view direction, std::string_view name,
                      std::string_view group, std::string_view side) {
    return portHead(port, std::string(direction) + " , lv2:AudioPort", name) +
           line("pg:group <" + std::string(pluginUri) + std::string(group) + ">") +
           line("lv2:designation pg:" + std::string(side));
}

std::string scalePoints() {
    return line("lv2:scalePoint [ rdfs:label \"R50\" ; rdf:value -50.0 ] , "
                "[ rdfs:label \"C\" ; rdf:value 0.0 ] , [ rdfs:label \"L50\" ; rdf:value 50.0 ]");
}

std::string parameterPort(int index) {
    const auto& description = descriptions[static_cast<std::size_t>(index)];
    const PortRange range = portRange(index);
    const float standard = factoryPresets[0].values[static_cast<std::size_t>(index)];
    std::string text =
        portHead(portOfParameter(index), "lv2:InputPort , lv2:ControlPort", description.name);
    text += line("rdfs:comment \"" + std::string(description.comment) + '"');
    text += line("lv2:default " + portNumber(index, standard));
    text += line("lv2:minimum " + number(range.minimum));
    text += line("lv2:maximum " + number(range.maximum));
    if (parameterAt(index).kind == ParameterKind::onOff)
        text += line("lv2:portProperty lv2:toggled");
    if (index == kParamProcess)
        text += line("lv2:designation lv2:enabled");
    if (index == kParamWidth)
        text += line("units:unit units:pc");
    if (index == kParamGain)
        text += line("units:unit units:db");
    if (isPosition(index))
        text += scalePoints();
    return text;
}

std::string meterPort(std::uint32_t port, std::string_view name, std::string_view comment) {
    return portHead(port, "lv2:OutputPort , lv2:ControlPort", name) +
           line("rdfs:comment \"" + std::string(comment) + '"') + line("lv2:default 0.0") +
           line("lv2:minimum -0.5") + line("lv2:maximum 0.5");
}

std::string portList() {
    std::vector<std::string> ports{
        messagePort(kPortControl, "lv2:InputPort", "Control"),
        messagePort(kPortNotify, "lv2:OutputPort", "Notify"),
        audioPort(kPortInLeft, "lv2:InputPort", "In Left", "#in", "left"),
        audioPort(kPortInRight, "lv2:InputPort", "In Right", "#in", "right"),
        audioPort(kPortOutLeft, "lv2:OutputPort", "Out Left", "#out", "left"),
        audioPort(kPortOutRight, "lv2:OutputPort", "Out Right", "#out", "right")};
    for (int index = 0; index < kNumParams; ++index)
        ports.push_back(parameterPort(index));
    ports.push_back(meterPort(kPortWidthMeter, "Width Meter",
                              "Stereo width of the output, -0.5 anti-phase to 0.5 mono"));
    ports.push_back(meterPort(kPortBalanceMeter, "Balance Meter",
                              "Balance of the output, -0.5 left to 0.5 right"));
    std::string text = "\tlv2:port ";
    for (std::size_t i = 0; i < ports.size(); ++i)
        text += (i != 0 ? " , [\n" : "[\n") + ports[i] + "\t]";
    return text + " .\n";
}

std::string presetUri(int preset) {
    return std::string(pluginUri) + "#preset" + std::to_string(preset);
}

std::string uri(std::string_view text) {
    std::string result("<");
    result += text;
    result += '>';
    return result;
}

} // namespace

std::string manifest() {
    std::string text = uri(pluginUri) + "\n\ta lv2:Plugin ;\n\tlv2:binary <mirelon_dsp.so> ;\n" +
                       "\trdfs:seeAlso <mirelon.ttl> .\n\n" + uri(windowUri) +
                       "\n\ta ui:X11UI ;\n\tlv2:binary <mirelon_ui.so> ;\n" +
                       "\trdfs:seeAlso <mirelon.ttl> .\n";
    for (int preset = 0; preset < kNumPresets; ++preset) {
        text += '\n';
        text += uri(presetUri(preset)) + "\n\ta pset:Preset ;\n\tlv2:appliesTo " + uri(pluginUri) +
                " ;\n\trdfs:seeAlso <presets.ttl> .\n";
    }
    return document(text);
}

std::string plugin() {
    const std::string self = uri(pluginUri);
    std::string text = uri(getClassUri) +
                       "\n\ta rdfs:Class ;\n\trdfs:subClassOf atom:Object ;\n"
                       "\trdfs:label \"Get\" ;\n"
                       "\trdfs:comment \"The window asks for the bank.\" .\n\n" +
                       uri(bankClassUri) +
                       "\n\ta rdfs:Class ;\n\trdfs:subClassOf atom:Object ;\n"
                       "\trdfs:label \"Bank\" ;\n"
                       "\trdfs:comment \"The bank, sent by either side.\" .\n\n" +
                       uri(bankPropertyUri) +
                       "\n\ta rdf:Property ;\n\trdfs:label \"bank\" ;\n"
                       "\trdfs:comment \"Eleven presets and the number of the current one, "
                       "692 bytes.\" ;\n\trdfs:range atom:Chunk .\n\n";
    for (const auto& [group, type, name] :
         {std::array{"#in", "pg:InputGroup", "In"}, std::array{"#out", "pg:OutputGroup", "Out"}})
        text += uri(std::string(pluginUri) + group) + "\n\ta pg:StereoGroup , " + type +
                " ;\n\tlv2:symbol \"" + (name[0] == 'I' ? "in" : "out") + "\" ;\n\tlv2:name \"" +
                name + "\" .\n\n";
    text += "<http://dravik.example/mirelon#project>\n\ta doap:Project ;\n"
            "\tdoap:name \"Mirelon\" ;\n"
            "\tdoap:shortdesc \"Stereo-image processor\" ;\n"
            "\tdoap:maintainer [\n\t\ta foaf:Agent ;\n\t\tfoaf:name \"dravik.example\" ;\n"
            "\t\tfoaf:homepage <http://dravik.example/>\n\t] .\n\n";
    text += uri(windowUri) +
            "\n\ta ui:X11UI ;\n"
            "\tlv2:requiredFeature urid:map , ui:parent , ui:idleInterface ;\n"
            "\tlv2:optionalFeature ui:resize , ui:touch , ui:noUserResize , opts:options ;\n"
            "\tlv2:extensionData ui:idleInterface ;\n"
            "\topts:supportedOption ui:scaleFactor ;\n"
            "\tui:portNotification [\n\t\tui:plugin " +
            self + " ;\n\t\tlv2:symbol \"" + portSymbols[kPortNotify] +
            "\" ;\n\t\tui:notifyType atom:Object\n\t] .\n\n";
    text += self +
            "\n\ta lv2:Plugin , lv2:SpatialPlugin ;\n"
            "\tdoap:name \"Dravik Mirelon\" ;\n"
            "\tlv2:project <http://dravik.example/mirelon#project> ;\n"
            "\tlv2:minorVersion 2 ;\n\tlv2:microVersion 0 ;\n"
            "\tlv2:optionalFeature lv2:hardRTCapable , urid:map , state:threadSafeRestore ;\n"
            "\tlv2:extensionData state:interface ;\n"
            "\tui:ui " +
            uri(windowUri) + " ;\n\tpg:mainInput " + uri(std::string(pluginUri) + "#in") +
            " ;\n\tpg:mainOutput " + uri(std::string(pluginUri) + "#out") + " ;\n" + portList();
    return document(text);
}

std::string presets() {
    std::string text;
    for (int preset = 0; preset < kNumPresets; ++preset) {
        const FactoryPreset& factory = factoryPresets[static_cast<std::size_t>(preset)];
        text += preset != 0 ? "\n" : "";
        text += uri(presetUri(preset)) + "\n\ta pset:Preset ;\n\tlv2:appliesTo " + uri(pluginUri) +
                " ;\n\trdfs:label \"" + std::string(factory.name) + "\" ;\n\tlv2:port ";
        for (int index = 0; index < kNumParams; ++index)
            text += (index != 0 ? " , [\n" : "[\n") +
                    line("lv2:symbol \"" + std::string(portSymbols[portOfParameter(index)]) + '"') +
                    line("pset:value " +
                         portNumber(index, factory.values[static_cast<std::size_t>(index)])) +
                    "\t]";
        text += " .\n";
    }
    return document(text);
}

} // namespace mirelon::test::lv2data
