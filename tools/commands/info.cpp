// info: what the plug-in says about itself.
#include "hosting/fourcharacters.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/loadedplugin.h"
#include "tools/nearestname.h"
#include "tools/parametervalue.h"
#include "tools/presets.h"

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

namespace mirelon::tools {

namespace {

using Json = nlohmann::ordered_json;

// Of the JSON that is printed; grows when a member changes its meaning or goes.
constexpr int descriptionVersion = 1;

struct InfoOptions {
    std::string plugin;
    bool json = false;
    bool parameterNames = false;
};

constexpr std::array<std::pair<VstAEffectFlags, const char*>, 10> flagNames{{
    {effFlagsHasEditor, "editor"},
    {effFlagsHasClip, "clip"},
    {effFlagsHasVu, "vu"},
    {effFlagsCanMono, "mono"},
    {effFlagsCanReplacing, "replacing"},
    {effFlagsProgramChunks, "chunks"},
    {effFlagsIsSynth, "synth"},
    {effFlagsNoSoundInStop, "no sound in stop"},
    {effFlagsExtIsAsync, "asynchronous"},
    {effFlagsCanDoubleReplacing, "double replacing"},
}};

constexpr std::array categoryNames{
    "unknown",     "effect",          "synth",       "analysis", "mastering",         "spacializer",
    "room effect", "surround effect", "restoration", "offline",  "shell of plug-ins", "generator"};

Json flagsOf(const hosting::Effect& effect) {
    Json names = Json::array();
    for (const auto& [flag, name] : flagNames) {
        if (effect.hasFlag(flag))
            names.push_back(name);
    }
    return names;
}

Json parametersOf(const hosting::Effect& effect) {
    Json list = Json::array();
    for (VstInt32 i = 0; i < effect.record().numParams; ++i) {
        Json parameter{
            {"index", i},
            {"name", effect.parameterName(i)},
            {"label", effect.parameterLabel(i)},
            {"value", effect.parameter(i)},
            {"display", effect.parameterDisplay(i)},
            {"automatable", effect.canBeAutomated(i)},
        };
        if (const auto properties = effect.parameterProperties(i)) {
            const auto text = [](const auto& field) {
                return std::string(field, strnlen(field, sizeof field));
            };
            parameter["properties"] = {
                {"label", text(properties->label)},
                {"shortLabel", text(properties->shortLabel)},
                {"flags", properties->flags},
                {"switch", (properties->flags & kVstParameterIsSwitch) != 0},
                {"step", properties->stepFloat},
                {"smallStep", properties->smallStepFloat},
                {"largeStep", properties->largeStepFloat},
            };
        }
        list.push_back(std::move(parameter));
    }
    return list;
}

Json describe(LoadedPlugin& plugin) {
    hosting::Effect& effect = plugin.effect;
    const AEffect& record = effect.record();
    const Presets presets(effect);
    const auto category = static_cast<std::size_t>(effect.category());
    Json all{
        {"version", descriptionVersion},
        {"file", plugin.module->libraries().front().string()},
        {"format", hosting::nameOf(plugin.module->format())},
        {"name", effect.name()},
        {"product", effect.product()},
        {"vendor", effect.vendor()},
        {"vendorVersion", effect.vendorVersion()},
        {"vstVersion", effect.vstVersion()},
        {"category", category < categoryNames.size() ? categoryNames[category] : "unknown"},
        {"record",
         {
             {"magic", hosting::fourCharacterText(record.magic)},
             {"uniqueID", hosting::fourCharacterText(record.uniqueID)},
             {"version", record.version},
             {"programs", record.numPrograms},
             {"parameters", record.numParams},
             {"inputs", record.numInputs},
             {"outputs", record.numOutputs},
             {"initialDelay", record.initialDelay},
             {"flags", record.flags},
             {"flagNames", flagsOf(effect)},
         }},
        {"parameters", parametersOf(effect)},
        {"program", effect.programName()},
        {"currentPreset", presets.current()},
        {"presets", presets.names()},
    };
    if (plugin.module->format() == hosting::PluginFormat::lv2)
        all["uri"] = plugin.module->name();
    return all;
}

std::string text(const Json& value) {
    return value.get<std::string>();
}

std::string joined(const Json& list) {
    std::string line;
    for (const Json& item : list)
        line.append(line.empty() ? "" : ", ").append(text(item));
    return line;
}

void printParameter(const Json& parameter) {
    const std::string label = text(parameter["label"]);
    std::string remarks;
    const auto remark = [&remarks](const std::string& text) {
        remarks.append(remarks.empty() ? "  " : ", ").append(text);
    };
    if (const auto properties = parameter.find("properties"); properties != parameter.end()) {
        std::array<char, 64> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "step %g, small %g, large %g",
                      (*properties)["step"].get<double>(), (*properties)["smallStep"].get<double>(),
                      (*properties)["largeStep"].get<double>());
        remark((*properties)["switch"].get<bool>() ? "switch" : buffer.data());
    }
    if (!parameter["automatable"].get<bool>())
        remark("not automatable");
    std::printf("  %2d  %-12s %8s %-4s %6.4f%s\n", parameter["index"].get<int>(),
                text(parameter["name"]).c_str(), text(parameter["display"]).c_str(),
                std::string(trimmed(label)).c_str(), parameter["value"].get<double>(),
                remarks.c_str());
}

void print(const Json& all) {
    const Json& record = all["record"];
    std::printf("%s\n", text(all["name"]).c_str());
    std::printf("  file        %s\n", text(all["file"]).c_str());
    std::printf("  product     %s\n", text(all["product"]).c_str());
    std::printf("  vendor      %s, version %ld\n", text(all["vendor"]).c_str(),
                all["vendorVersion"].get<long>());
    std::printf("  category    %s\n", text(all["category"]).c_str());
    if (all.contains("uri"))
        std::printf("  interface   LV2, %s\n", text(all["uri"]).c_str());
    else if (text(all["format"]) == hosting::nameOf(hosting::PluginFormat::clap))
        std::printf("  interface   CLAP\n");
    else
        std::printf("  interface   VST %ld, unique ID %s, version %d\n",
                    all["vstVersion"].get<long>(), text(record["uniqueID"]).c_str(),
                    record["version"].get<int>());
    std::printf("  channels    %d in, %d out, latency %d frames\n", record["inputs"].get<int>(),
                record["outputs"].get<int>(), record["initialDelay"].get<int>());
    std::printf("  flags       %d (%s)\n", record["flags"].get<int>(),
                joined(record["flagNames"]).c_str());
    std::printf("  programs    %d (current \"%s\")\n", record["programs"].get<int>(),
                text(all["program"]).c_str());
    std::printf("\nparameters\n");
    for (const Json& parameter : all["parameters"])
        printParameter(parameter);
    std::printf("\npresets\n");
    for (std::size_t i = 0; i < all["presets"].size(); ++i)
        std::printf("  %2zu  %s%s\n", i, text(all["presets"][i]).c_str(),
                    i == all["currentPreset"].get<std::size_t>() ? "  (current)" : "");
}

Run defineInfo(CLI::App& parser) {
    const auto options = std::make_shared<InfoOptions>();
    addPluginOption(parser, options->plugin);
    CLI::Option* const json = parser.add_flag("--json", options->json, "Print it as JSON");
    parser
        .add_flag("--parameter-names", options->parameterNames,
                  "Print the names of its parameters alone, one on a line")
        ->excludes(json);
    return [options] {
        LoadedPlugin plugin(options->plugin);
        if (options->parameterNames) {
            for (const std::string& name : parameterNames(plugin.effect))
                std::cout << name << '\n';
            return;
        }
        const Json all = describe(plugin);
        if (options->json)
            std::cout << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
        else
            print(all);
    };
}

} // namespace

Command infoCommand() {
    return {"info", "Show what the plug-in says about itself", defineInfo};
}

} // namespace mirelon::tools
