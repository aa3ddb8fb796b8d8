// Runs checks, each in a process of its own with a time limit.
#pragma once

#include "validator/check.h"
#include "validator/scratchhome.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace mirelon::validator {

enum class Verdict { passed, failed, warned, skipped };

// "pass", "FAIL", "warn" and "skip".
const char* nameOf(Verdict verdict);

struct Result {
    const Check* check = nullptr;
    Verdict verdict = Verdict::failed;
    std::string note; // why it did not pass, or a figure
    double seconds = 0.0;
    std::string activity{};            // what was being done to the effect; or empty
    std::vector<std::string> output{}; // the last lines that the process has printed
};

// Starts this program again for the one check, which has `seconds` of time. A crash,
// an early exit or a run past the limit counts like any other end.
Result runInChild(const Check& check, const Subject& subject, const ScratchHome& home, int seconds);

// In this process, for a debugger: what crashes there crashes here.
Result runHere(const Check& check, const Subject& subject, const ScratchHome& home);

// Why the file is no plug-in that could be checked; nothing when it is one, be it one
// that crashes when it is loaded.
std::optional<std::string> whyNotLoaded(const Subject& subject, const ScratchHome& home);

// What the child does: runs the check of this name and reports to `descriptor`; keeps
// what it is at in `activity`. Answers false when there is no such check.
bool runAndReport(const std::string& name, const Subject& subject, int descriptor,
                  const std::filesystem::path& activity);

} // namespace mirelon::validator
