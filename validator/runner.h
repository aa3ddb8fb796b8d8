// Runs checks, each in a process of its own with a time limit.
#pragma once

#include "validator/check.h"

#include <filesystem>

namespace mirelon::validator {

enum class Verdict { passed, failed, skipped };

const char* nameOf(Verdict verdict);

struct Result {
    const Check* check = nullptr;
    Verdict verdict = Verdict::failed;
    std::string note; // why it failed or was skipped, or a figure
    double seconds = 0.0;
};

// A home for the effect's files while it is being checked, so that the user's
// stay as they are. Removed with what the effect has put there.
class ScratchHome {
  public:
    ScratchHome();
    ~ScratchHome();
    ScratchHome(const ScratchHome&) = delete;
    ScratchHome& operator=(const ScratchHome&) = delete;

    const std::filesystem::path& folder() const { return path; }

  private:
    std::filesystem::path path;
};

// Starts this program again for the one check. A crash, an early exit or a run
// past the limit is a failure like any other.
Result runInChild(const Check& check, const Subject& subject, const ScratchHome& home);

// What the child does: runs the check and reports to `descriptor`.
void runAndReport(const Check& check, const Subject& subject, int descriptor);

} // namespace mirelon::validator
