// mirelon-host check as a user runs it.
#pragma once

#include "hosting/sanitized.h"
#include "tests/support/shellcommand.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

namespace mirelon::test::checks {

using Outcome = ShellResult;

inline Outcome run(const std::string& command) {
    return runShell(command + " 2>&1");
}

inline const std::string host = MIRELON_HOST_FILE;

// On the only plug-in of the run.
inline nlohmann::json reportOf(const Outcome& outcome) {
    const auto all = nlohmann::json::parse(outcome.output);
    EXPECT_EQ(all["version"], 1);
    EXPECT_EQ(all["plugins"].size(), 1U);
    return all["plugins"][0];
}

// What would end a process by a signal ends it by the sanitizer's report.
inline bool isEndedByTheSanitizer(const nlohmann::json& check) {
    return hosting::sanitized && check["note"] == "ends the host's process with exit status 1";
}

// The interposing library and a sanitizer's runtime exclude each other.
inline constexpr const char* sanitizedNote = "this program is built with a sanitizer";
inline bool needsSkipping(const nlohmann::json& check) {
    return check["note"] == sanitizedNote;
}
inline bool saysItIsSanitized(const Outcome& outcome) {
    return outcome.output.find(sanitizedNote) != std::string::npos;
}

enum class Notes { taken, notTaken };

// Of an effect that takes no notes, all but the checks of those.
inline void expectAllPassed(const Outcome& outcome, Notes notes = Notes::taken) {
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    const auto report = reportOf(outcome);
    for (const auto& check : report["checks"]) {
        if (needsSkipping(check))
            continue;
        const bool isOfNotes = check["name"].get<std::string>().find("notes") != std::string::npos;
        if (isOfNotes && notes == Notes::notTaken) {
            EXPECT_EQ(check["note"], "takes no notes") << check;
        } else {
            EXPECT_EQ(check["result"], "passed") << check;
        }
    }
}

} // namespace mirelon::test::checks
