#include "hosting/pluginfile.h"

#ifdef MIRELON_CLAP_HOSTING
#include "hosting/clapeffect.h"
#endif
#include "hosting/hostingerror.h"
#include "hosting/lv2effect.h"
#include "hosting/module.h"

#include <filesystem>
#include <system_error>

namespace mirelon::hosting {

namespace {

bool isUri(const std::string& given) {
    return given.find("://") != std::string::npos || given.starts_with("urn:");
}

} // namespace

// Other formats are told by the file's extension, here and below.
PluginFormat formatOf(const std::string& given) {
    if (isUri(given))
        return PluginFormat::lv2;
    std::error_code failure;
    if (std::filesystem::is_directory(given, failure)) {
        if (!std::filesystem::exists(std::filesystem::path(given) / "manifest.ttl", failure))
            throw PluginError(given + ": a folder, but no LV2 bundle (it has no manifest.ttl)");
        return PluginFormat::lv2;
    }
    if (!std::filesystem::exists(given, failure))
        throw PluginError(given + ": no such plug-in file");
    return std::filesystem::path(given).extension() == ".clap" ? PluginFormat::clap
                                                               : PluginFormat::vst2;
}

std::unique_ptr<const PluginModule> openPlugin(const std::string& given) {
    switch (formatOf(given)) {
    case PluginFormat::lv2:
        return std::make_unique<Lv2Module>(isUri(given) ? Lv2Bundle::ofUri(given)
                                                        : Lv2Bundle::inFolder(given));
    case PluginFormat::clap:
#ifdef MIRELON_CLAP_HOSTING
        return std::make_unique<ClapModule>(given);
#else
        throw PluginError(given + ": this program was built without CLAP");
#endif
    case PluginFormat::vst2:
        break;
    }
    return std::make_unique<Module>(given);
}

} // namespace mirelon::hosting
