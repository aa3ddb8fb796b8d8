// Loading: twice, quickly, small, and without leaving names behind.
#include "hosting/residentmemory.h"
#include "validator/elfsymbols.h"
#include "validator/instance.h"
#include "validator/symbolnames.h"

#include <array>
#include <chrono>
#include <memory>
#include <string_view>

namespace mirelon::validator {

namespace {

// What hosts look for, on any system.
constexpr std::array<std::string_view, 4> entryPoints{"VSTPluginMain", "main", "main_macho",
                                                      "main_plugin"};
constexpr std::array<std::string_view, 3> lv2EntryPoints{"lv2_descriptor", "lv2_lib_descriptor",
                                                         "lv2ui_descriptor"};
constexpr std::string_view clapEntryPoint = "clap_entry";

bool isEntryPoint(hosting::PluginFormat format, const std::string& name) {
    const auto among = [&name](const auto& names) {
        return std::ranges::find(names, name) != names.end();
    };
    switch (format) {
    case hosting::PluginFormat::lv2:
        return among(lv2EntryPoints);
    case hosting::PluginFormat::clap:
        return name == clapEntryPoint;
    case hosting::PluginFormat::vst2:
        break;
    }
    return among(entryPoints);
}

// The libraries of the plug-in, which need not load for that.
std::vector<std::filesystem::path> librariesOf(const Subject& subject,
                                               hosting::PluginFormat format) {
    if (format == hosting::PluginFormat::vst2)
        return {subject.plugin};
    return hosting::openPlugin(subject.plugin)->libraries();
}

std::string twice(const Subject& subject) {
    {
        const Instance first(subject);
        const Instance second(subject);
        require(&first.effect.record() != &second.effect.record(),
                "gives two instances the same effect record");
        require(first.effect.record().object != second.effect.record().object ||
                    first.effect.record().object == nullptr,
                "gives two instances the same object");
        require(first.effect.record().uniqueID == second.effect.record().uniqueID,
                "changes its unique ID from one instance to the next");
    }
    doing("loading it again");
    const Instance again(subject);
    require(again.effect.record().magic == kEffectMagic, "is not usable after being unloaded");
    return {};
}

std::string time(const Subject& subject) {
    const auto begin = std::chrono::steady_clock::now();
    const Instance instance(subject);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
    expect(took.count() < 2000.0, "takes ", took.count(), " ms to load and open");
    std::ostringstream note;
    note << std::fixed;
    note.precision(1);
    note << took.count() << " ms";
    return note.str();
}

std::string memory(const Subject& subject) {
    const Instance first(subject);
    constexpr int count = 16;
    constexpr long mostKilobytes = 32 * 1024;
    const auto residentKilobytes = [] {
        return static_cast<long>(hosting::residentMemory() / 1024);
    };
    const long before = residentKilobytes();
    if (before == 0)
        throw Skipped("the kernel does not say how much memory there is");
    std::vector<std::unique_ptr<Instance>> more;
    more.reserve(count);
    for (int i = 0; i < count; ++i)
        more.push_back(std::make_unique<Instance>(subject));
    const long each = (residentKilobytes() - before) / count;
    expect(each <= mostKilobytes, "takes ", each, " KiB an instance");
    return std::to_string(each) + " KiB an instance";
}

std::string entry(const Subject& subject) {
    const auto format = hosting::formatOf(subject.plugin);
    for (const auto& library : librariesOf(subject, format)) {
        const auto names = exportedSymbols(library);
        require(std::ranges::any_of(
                    names, [format](const auto& name) { return isEntryPoint(format, name); }),
                library.filename().string(), " exports no entry point");
    }
    return {};
}

std::string leakedSymbols(const Subject& subject) {
    const auto format = hosting::formatOf(subject.plugin);
    std::string example;
    std::size_t leaked = 0;
    for (const auto& library : librariesOf(subject, format)) {
        for (const std::string& name : exportedSymbols(library)) {
            if (isEntryPoint(format, name))
                continue;
            if (leaked++ == 0)
                example = name;
        }
    }
    expect(leaked == 0, "exports ", leaked, " names besides its entry points, such as ",
           readableName(example));
    return {};
}

constexpr std::array loadingTable{
    Check{"load-twice", 1, Formats::all, twice, 30},
    Check{"load-time", 1, Formats::all, time, 30},
    Check{"load-memory", 1, Formats::all, memory, 60},
    Check{"symbols-entry", 1, Formats::all, entry, 10},
    Check{"symbols-leaked", 1, Formats::all, leakedSymbols, 10},
};

} // namespace

std::span<const Check> loadingChecks() {
    return loadingTable;
}

} // namespace mirelon::validator
