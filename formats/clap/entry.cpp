// The name by which hosts find the CLAP plug-in, and what makes instances.
#include "formats/clap/clapplugin.h"

#include <atomic>
#include <clap/entry.h>
#include <clap/plugin-factory.h>
#include <cstring>

namespace {

using mirelon::clap::pluginDescriptor;

std::uint32_t pluginCount(const clap_plugin_factory* /*factory*/) noexcept {
    return 1;
}

const clap_plugin_descriptor* descriptorAt(const clap_plugin_factory* /*factory*/,
                                           std::uint32_t index) noexcept {
    return index == 0 ? &pluginDescriptor : nullptr;
}

const clap_plugin* create(const clap_plugin_factory* /*factory*/, const clap_host* host,
                          const char* id) noexcept {
    if (id == nullptr || std::strcmp(id, pluginDescriptor.id) != 0)
        return nullptr;
    return mirelon::clap::createPlugin(host);
}

constexpr clap_plugin_factory factory{pluginCount, descriptorAt, create};

// Several parts of a host may have the file in use, each from init to deinit.
std::atomic<int> users{0};

bool init(const char* /*path*/) noexcept {
    ++users;
    return true;
}

void deinit() noexcept {
    int count = users.load();
    while (count > 0 && !users.compare_exchange_weak(count, count - 1)) {
    }
}

const void* factoryOf(const char* id) noexcept {
    const bool known = id != nullptr && std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0;
    return known && users.load() > 0 ? &factory : nullptr;
}

} // namespace

extern "C" CLAP_EXPORT const clap_plugin_entry clap_entry{CLAP_VERSION, init, deinit, factoryOf};
