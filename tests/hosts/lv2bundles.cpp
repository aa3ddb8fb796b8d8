#include "tests/hosts/lv2bundles.h"

namespace mirelon::test {
namespace fs = std::filesystem;
namespace {

constexpr auto windowBinary = "mirelon_ui.so";

// Specifications have no manifest entry of a plug-in; hosts want their classes
// and units.
void linkSpecifications(const fs::path& folder) {
    for (const char* name : {"atom", "buf-size", "core", "options", "port-groups", "port-props",
                             "presets", "resize-port", "state", "ui", "units", "urid"})
        if (const fs::path bundle = fs::path("/usr/lib/lv2") / (std::string(name) + ".lv2");
            fs::exists(bundle))
            fs::create_directory_symlink(bundle, folder / bundle.filename());
}

} // namespace

Environment lv2Environment(const fs::path& folder) {
    fs::create_directories(folder);
    fs::create_directory_symlink(MIRELON_LV2_BUNDLE, folder / "mirelon.lv2");
    linkSpecifications(folder);
    return {{"LV2_PATH", folder}};
}

Environment observedLv2Environment(const fs::path& folder, const fs::path& record) {
    const fs::path bundle = folder / "mirelon.lv2";
    fs::create_directories(bundle);
    for (const auto& file : fs::directory_iterator(MIRELON_LV2_BUNDLE))
        if (file.path().filename() != windowBinary)
            fs::create_symlink(file.path(), bundle / file.path().filename());
    fs::create_symlink(MIRELON_LV2_OBSERVER_FILE, bundle / windowBinary);
    linkSpecifications(folder);
    return {{"LV2_PATH", folder},
            {"MIRELON_OBSERVED", fs::path(MIRELON_LV2_BUNDLE) / windowBinary},
            {"MIRELON_OBSERVATIONS", record}};
}

} // namespace mirelon::test
