// A CLAP file with a factory that makes nothing.
#include <clap/entry.h>
#include <clap/plugin-factory.h>

#include <cstdint>
#include <cstring>

namespace {

constexpr clap_plugin_factory factory{
    [](const clap_plugin_factory*) -> std::uint32_t { return 0; },
    [](const clap_plugin_factory*, std::uint32_t) -> const clap_plugin_descriptor* {
        return nullptr;
    },
    [](const clap_plugin_factory*, const clap_host*, const char*) -> const clap_plugin* {
        return nullptr;
    }};

} // namespace

extern "C" CLAP_EXPORT const clap_plugin_entry clap_entry{
    CLAP_VERSION, [](const char*) { return true; }, [] {},
    [](const char* id) -> const void* {
        return std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0 ? &factory : nullptr;
    }};
