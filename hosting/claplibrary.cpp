#include "hosting/claplibrary.h"

#include "hosting/hostingerror.h"

#include <dlfcn.h>

namespace mirelon::hosting {

void ClapLibrary::Close::operator()(void* handle) const noexcept {
    dlclose(handle);
}

ClapLibrary::ClapLibrary(const std::filesystem::path& file)
    : path(std::filesystem::absolute(file)) {
    if (!std::filesystem::is_regular_file(path))
        throw PluginError(file.string() + ": no such plug-in file");
    library.reset(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!library) {
        const char* const reason = dlerror();
        throw PluginError(file.string() + ": not a plug-in (" +
                          (reason != nullptr ? reason : "the loader gives no reason") + ")");
    }
    start = static_cast<const clap_plugin_entry*>(dlsym(library.get(), "clap_entry"));
    if (start == nullptr)
        throw PluginError(file.string() + ": not a CLAP plug-in (it exports no clap_entry)");
    if (!clap_version_is_compatible(start->clap_version))
        throw PluginError(file.string() + ": it is made for another CLAP");
    if (!start->init(path.c_str()))
        throw PluginError(file.string() + ": the plug-in file refuses to be initialised");
    maker = static_cast<const clap_plugin_factory*>(start->get_factory(CLAP_PLUGIN_FACTORY_ID));
    if (maker == nullptr) {
        start->deinit();
        throw PluginError(file.string() + ": it makes no plug-ins");
    }
}

ClapLibrary::~ClapLibrary() {
    start->deinit();
}

std::vector<std::string> ClapLibrary::ids() const {
    std::vector<std::string> ids;
    for (std::uint32_t i = 0; i < maker->get_plugin_count(maker); ++i)
        if (const auto* const descriptor = maker->get_plugin_descriptor(maker, i))
            ids.emplace_back(descriptor->id);
    return ids;
}

std::string ClapLibrary::firstId() const {
    const auto all = ids();
    if (all.empty())
        throw PluginError(path.string() + ": there is no plug-in in it");
    return all.front();
}

} // namespace mirelon::hosting
