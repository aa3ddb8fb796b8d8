#include "hosting/module.h"

#include "hosting/hostingerror.h"

#include <dlfcn.h>
#include <string>
#include <system_error>

namespace mirelon::hosting {

namespace {

std::string loaderMessage() {
    const char* const text = dlerror();
    return text != nullptr ? text : "the loader gives no reason";
}

} // namespace

void Module::Close::operator()(void* handle) const noexcept {
    dlclose(handle);
}

Module::Module(const std::filesystem::path& file) {
    std::error_code failure;
    // The loader looks a name without a slash up in the library path.
    path = std::filesystem::absolute(file, failure);
    const auto status = std::filesystem::status(path, failure);
    if (!std::filesystem::exists(status))
        throw PluginError(file.string() + ": no such plug-in file");
    if (!std::filesystem::is_regular_file(status))
        throw PluginError(file.string() + ": not a file");

    library.reset(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!library)
        throw PluginError(file.string() + ": not a plug-in (" + loaderMessage() + ")");
    for (const char* const name : {"VSTPluginMain", "main"}) {
        if (void* const address = symbol(name)) {
            entry = reinterpret_cast<EntryPoint>(address);
            return;
        }
    }
    throw PluginError(file.string() + ": not a VST 2 plug-in (it exports no VSTPluginMain)");
}

void* Module::symbol(const char* name) const noexcept {
    return dlsym(library.get(), name);
}

} // namespace mirelon::hosting
