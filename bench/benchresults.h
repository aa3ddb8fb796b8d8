// The results of one run of mirelon-bench.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace mirelon::bench {

class Results {
  public:
    // Reads the medians of a JSON file that Google Benchmark wrote. Throws
    // std::runtime_error when it cannot.
    explicit Results(const std::filesystem::path& file);

    // Nanoseconds of processor time for one frame (or instance); nothing when
    // the benchmark has not run.
    std::optional<double> time(const std::string& name) const;
    // The same as a ratio to the plain chain of the followers.
    std::optional<double> ratio(const std::string& name) const;
    // A counter of a benchmark.
    std::optional<double> bytes(const std::string& name) const;

    // Names that begin so, in alphabetical order, with their times.
    std::map<std::string, double> startingWith(const std::string& prefix) const;

  private:
    std::map<std::string, double> times;
    std::map<std::string, double> sizes;
};

} // namespace mirelon::bench
