// What the checks of a plug-in have found, for people and as JSON.
#pragma once

#include "validator/runner.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace mirelon::tools {

class CheckReport {
  public:
    CheckReport(const validator::Subject& subject, int level);

    void add(const validator::Result& result) { results.push_back(result); }
    int count(validator::Verdict verdict) const;
    // Whether every check was skipped.
    bool saysNothing() const;

    // The last result: a line, and below it what helps to find a fault.
    void printLast() const;
    void printSummary() const;
    nlohmann::ordered_json json() const;

  private:
    std::string commandAgain(const validator::Result& result) const;

    validator::Subject subject;
    int level;
    std::vector<validator::Result> results;
};

// The reports of a run, as an object with a version. `refused` are lines on files that
// could not be checked.
void printJson(const std::vector<CheckReport>& reports, const std::vector<std::string>& refused,
               std::uint64_t seed);

// The checks with their levels, and what each does.
void printChecks(bool verbose);
// The same as the page docs/checks.md.
void printCheckPage();

} // namespace mirelon::tools
