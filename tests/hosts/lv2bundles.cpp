#include "tests/hosts/lv2bundles.h"

namespace mirelon::test {
namespace fs = std::filesystem;

Environment lv2Environment(const fs::path& folder) {
    fs::create_directories(folder);
    fs::create_directory_symlink(MIRELON_LV2_BUNDLE, folder / "mirelon.lv2");
    // Specifications have no manifest entry of a plug-in; hosts want their
    // classes and units.
    for (const char* name : {"atom", "buf-size", "core", "options", "port-groups", "port-props",
                             "presets", "resize-port", "state", "ui", "units", "urid"})
        if (const fs::path bundle = fs::path("/usr/lib/lv2") / (std::string(name) + ".lv2");
            fs::exists(bundle))
            fs::create_directory_symlink(bundle, folder / bundle.filename());
    return {{"LV2_PATH", folder}};
}

} // namespace mirelon::test
