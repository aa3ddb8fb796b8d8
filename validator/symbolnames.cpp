#include "validator/symbolnames.h"

#include "validator/check.h"
#include "validator/elfsymbols.h"

#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <filesystem>
#include <memory>

namespace mirelon::validator {

namespace {

struct Free {
    void operator()(char* text) const noexcept { std::free(text); }
};

constexpr std::size_t longestName = 80;

std::string demangled(const std::string& symbol) {
    int status = 0;
    const std::unique_ptr<char, Free> name(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status));
    return status == 0 && name ? name.get() : symbol;
}

} // namespace

std::string readableName(const std::string& symbol) {
    std::string name = demangled(symbol);
    if (name.size() <= longestName)
        return name;
    const std::size_t kept = longestName / 2 - 1;
    return name.substr(0, kept) + "..." + name.substr(name.size() - kept);
}

std::string placeOf(const void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return {};
    const std::string file = std::filesystem::path(info.dli_fname).filename().string();
    const auto offset = static_cast<std::uint64_t>(static_cast<const char*>(address) -
                                                   static_cast<const char*>(info.dli_fbase));
    const std::string function = functionAt(info.dli_fname, offset);
    if (!function.empty())
        return readableName(function) + " in " + file;
    std::ostringstream text;
    text << file << "+0x" << std::hex << offset;
    return text.str();
}

} // namespace mirelon::validator
