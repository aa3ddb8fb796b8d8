#include "bench/benchresults.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <stdexcept>

namespace mirelon::bench {
namespace {

std::optional<double> find(const std::map<std::string, double>& values, const std::string& name) {
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

Results::Results(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream)
        throw std::runtime_error(file.string() + ": cannot be read");
    try {
        const auto document = nlohmann::json::parse(stream);
        for (const auto& run : document.at("benchmarks")) {
            if (run.value("aggregate_name", "") != "median" || !run.contains("items_per_second"))
                continue;
            const auto name = run.at("run_name").get<std::string>();
            times[name] = 1e9 / run.at("items_per_second").get<double>();
            if (run.contains("bytes"))
                sizes[name] = run.at("bytes").get<double>();
        }
    } catch (const nlohmann::json::exception& error) {
        throw std::runtime_error(file.string() + ": " + error.what());
    }
    if (times.empty())
        throw std::runtime_error(file.string() + ": no medians in it");
}

std::optional<double> Results::time(const std::string& name) const {
    return find(times, name);
}

std::optional<double> Results::ratio(const std::string& name) const {
    const auto own = time(name);
    const auto chain = time("reference/plain chain/512");
    return own && chain ? std::optional(*own / *chain) : std::nullopt;
}

std::optional<double> Results::bytes(const std::string& name) const {
    return find(sizes, name);
}

std::map<std::string, double> Results::startingWith(const std::string& prefix) const {
    std::map<std::string, double> found;
    for (const auto& [name, time] : times)
        if (name.starts_with(prefix))
            found.emplace(name, time);
    return found;
}

} // namespace mirelon::bench
