// mirelon-benchtable RESULTS.json [PICTURE.png]: prints the results of
// mirelon-bench as ratios, and draws them.
#include "bench/benchpicture.h"
#include "bench/benchresults.h"

#include <cstdio>
#include <exception>
#include <initializer_list>

namespace {

using mirelon::bench::Results;

const std::string coreFloat = "/float/processing/noise/";

void printHeading(const char* text) {
    std::printf("\n%s\n", text);
}

void printCell(std::optional<double> value, const char* format = "%12.2f") {
    if (value)
        std::printf(format, *value);
    else
        std::printf("%12s", "-");
}

void printTime(const Results& results, const std::string& label, const std::string& name) {
    if (!results.time(name))
        return;
    std::printf("  %-34s", label.c_str());
    printCell(results.time(name));
    printCell(results.ratio(name));
    std::printf("\n");
}

void printReferences(const Results& results) {
    std::printf("%-36s%12s%12s", "One frame, blocks of 512", "ns", "ratio");
    std::printf("\n");
    printTime(results, "copy of two channels", "reference/copy/512");
    printTime(results, "two-step follower chain", "reference/two-step chain/512");
    printTime(results, "plain follower chain", "reference/plain chain/512");
}

void printHosted(const Results& results) {
    printHeading("Loaded by a host, noise");
    struct Row {
        const char* name;
        const char* group;
    };
    for (const Row& row :
         {Row{"Mirelon, float", "plugin/float"}, Row{"Mirelon, double", "plugin/double"},
          Row{"as LV2, float", "lv2/float"}, Row{"as CLAP, float", "clap/float"},
          Row{"as CLAP, double", "clap/double"}})
        for (const char* const frames : {"64", "512"})
            printTime(results, std::string(row.name) + ", blocks of " + frames,
                      std::string(row.group) + "/" + frames);
    for (const auto& [name, time] : results.startingWith("peer/"))
        printTime(results, name.substr(5) + ", blocks of 512", name);
}

// Times are those of a frame: what a block takes more with events, shared out.
void printEvents(const Results& results) {
    const auto without = results.time("clap/float/512");
    if (!without)
        return;
    printHeading("A parameter event in a CLAP block of 512 frames, ns");
    for (const int count : {1, 16, 64, 512}) {
        const std::string number = std::to_string(count);
        if (const auto with = results.time("clap/events in 512 frames/" + number))
            std::printf("  %-34s%12.0f\n", (number + " in the block").c_str(),
                        (*with - *without) * 512 / count);
    }
}

void printCore(const Results& results) {
    printHeading("The core's kernels, ratios");
    std::printf("%-36s%12s%12s%12s%12s%12s%12s\n", "", "noise 64", "noise 512", "mono", "silence",
                "tail", "denormals");
    for (const char* const kernel : {"avx512", "avx2", "sse2", "portable"})
        for (const char* const mode : {"processing", "pass-through"})
            for (const char* const precision : {"float", "double"}) {
                const std::string name =
                    std::string("core/") + kernel + "/" + precision + "/" + mode + "/";
                if (!results.time(name + "noise/512"))
                    continue;
                std::printf("  %-34s",
                            (std::string(kernel) + ", " + precision + ", " + mode).c_str());
                printCell(results.ratio(name + "noise/64"));
                for (const char* const material : {"noise", "mono", "silence", "tail", "denormals"})
                    printCell(results.ratio(name + material + "/512"));
                std::printf("\n");
            }
}

void printBlockSizes(const Results& results) {
    printHeading("Noise by block size, float, processing, ratios");
    constexpr const char* sizes[] = {"16", "32", "64", "128", "256", "512", "1024", "4096"};
    std::printf("%-36s", "");
    for (const char* const frames : sizes)
        std::printf("%12s", frames);
    std::printf("\n");
    for (const char* const kernel : {"avx512", "avx2", "sse2", "portable"}) {
        const std::string name = "core/" + (kernel + coreFloat);
        if (!results.time(name + "512"))
            continue;
        std::printf("  %-34s", kernel);
        for (const char* const frames : sizes)
            printCell(results.ratio(name + frames));
        std::printf("\n");
    }
}

void printInstances(const Results& results) {
    printHeading("Instances");
    for (const auto& [name, time] : results.startingWith("plugin/instances in turn/"))
        printTime(results, name.substr(7) + ", ns a frame", name);
    if (const auto time = results.time("plugin/create, open, close"))
        std::printf("  %-34s%12.4f ms\n", "create, open and close one", *time / 1e6);
    if (const auto time = results.time("plugin/load"))
        std::printf("  %-34s%12.4f ms\n", "load the file once more", *time / 1e6);
    if (const auto bytes = results.bytes("plugin/memory/256/iterations:1"))
        std::printf("  %-34s%12.1f KiB\n", "resident memory of one", *bytes / 1024.0);
}

// What the audio path is held to. Ratios to the plain chain, to a peer, or
// milliseconds.
void printGoals(const Results& results) {
    printHeading("Goals                                    measured     at most");
    const auto print = [](const char* label, std::optional<double> measured, double most) {
        if (!measured)
            return;
        std::printf("  %-34s%12.4f%12.2f  %s\n", label, *measured, most,
                    *measured <= most ? "reached" : "MISSED");
    };
    print("float in a host, blocks of 512", results.ratio("plugin/float/512"), 0.75);
    print("double in a host, blocks of 512", results.ratio("plugin/double/512"), 0.75);
    print("float in a host, blocks of 64", results.ratio("plugin/float/64"), 0.85);
    for (const std::string kernel : {"avx512", "avx2"}) {
        const std::string core = "core/" + kernel + "/float/";
        print((kernel + ": silence").c_str(), results.ratio(core + "processing/silence/512"), 1.05);
        print((kernel + ": pass-through").c_str(), results.ratio(core + "pass-through/noise/512"),
              0.75);
    }
    print("without fused instructions", results.ratio("core/sse2" + coreFloat + "512"), 10.0);
    const auto own = results.time("plugin/float/512");
    const auto balance = results.time("peer/x42 balance");
    if (own && balance)
        print("against x42 balance", *own / *balance, 0.40);
    for (const auto& [format, group] : {std::pair{"LV2", "lv2"}, {"CLAP", "clap"}})
        if (const auto time = results.time(std::string(group) + "/float/512"); own && time)
            print((std::string("as ") + format + " against VST 2, blocks of 512").c_str(),
                  *time / *own, 1.02);
    if (const auto time = results.time("plugin/create, open, close"))
        print("create, open, close, in ms", *time / 1e6, 1.0);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: mirelon-benchtable RESULTS.json [PICTURE.png]\n");
        return 2;
    }
    try {
        const Results results(argv[1]);
        printReferences(results);
        printHosted(results);
        printEvents(results);
        printCore(results);
        printBlockSizes(results);
        printInstances(results);
        printGoals(results);
        if (argc == 3)
            mirelon::bench::drawPicture(results, argv[2]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mirelon-benchtable: %s\n", error.what());
        return 2;
    }
}
