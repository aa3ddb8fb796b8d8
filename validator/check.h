// One thing that an effect must get right, as a test that can be run by name.
#pragma once

#include "hosting/pluginmodule.h"
#include "validator/activity.h"

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

namespace mirelon::validator {

// What a check works on.
struct Subject {
    std::string plugin;     // a file's or folder's whole path, or a URI
    std::uint64_t seed = 0; // of everything random
};

// The effect does what it must not; the text says what was seen.
class Failed : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The check says nothing about this effect on this machine; the text says why.
class Skipped : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The effect does what it may do, and hardly any effect does; the text says what.
class Unusual : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Throws Failed with the texts and numbers of `message` joined.
template <typename... Parts>
void require(bool holds, const Parts&... message) {
    if (!holds)
        throw Failed(joined(message...));
}
// The same for what is only unusual.
template <typename... Parts>
void expect(bool holds, const Parts&... message) {
    if (!holds)
        throw Unusual(joined(message...));
}

enum class Guard { none, realTime };

// The formats that a check is for. What only VST 2 effects are asked, an adapter
// would answer for other plug-ins.
enum class Formats { all, vst2, lv2, clap };

constexpr bool includes(Formats formats, hosting::PluginFormat format) noexcept {
    switch (formats) {
    case Formats::vst2:
        return format == hosting::PluginFormat::vst2;
    case Formats::lv2:
        return format == hosting::PluginFormat::lv2;
    case Formats::clap:
        return format == hosting::PluginFormat::clap;
    case Formats::all:
        break;
    }
    return true;
}
constexpr const char* nameOf(Formats formats) noexcept {
    switch (formats) {
    case Formats::vst2:
        return nameOf(hosting::PluginFormat::vst2);
    case Formats::lv2:
        return nameOf(hosting::PluginFormat::lv2);
    case Formats::clap:
        return nameOf(hosting::PluginFormat::clap);
    case Formats::all:
        break;
    }
    return "all";
}

// What it says of an effect not to pass, be it by a crash: that it fails in a host,
// or that it takes badly what no known host does to it.
enum class Severity { fault, unusual };

struct Check {
    const char* name; // the family and what is looked at
    int level;        // 1 to 10: how much it asks
    Formats formats;
    // Answers a note for the report, possibly empty. Throws Failed or Skipped.
    // Runs in a process of its own, which it need not leave tidy.
    std::string (*run)(const Subject& subject);
    int seconds; // longer than this counts as hanging
    Guard guard = Guard::none;
    Severity severity = Severity::fault;
};

// What the check does and why it matters, in a few sentences; null for none.
const char* descriptionOf(const Check& check);

inline constexpr int lowestLevel = 1;
inline constexpr int highestLevel = 10;

// All checks, lowest level first.
std::span<const Check> checks();

// Null when there is none of that name.
const Check* findCheck(const std::string& name);

// The families, one file each.
std::span<const Check> loadingChecks();
std::span<const Check> identityChecks();
std::span<const Check> audioChecks();
std::span<const Check> stateChecks();
std::span<const Check> automationChecks();
std::span<const Check> editorChecks();
std::span<const Check> lifecycleChecks();
std::span<const Check> parameterFuzzChecks();
std::span<const Check> stateFuzzChecks();
std::span<const Check> threadChecks();
std::span<const Check> realTimeChecks();
std::span<const Check> noteChecks();
std::span<const Check> messageChecks();
// Those of CLAP, of several files; none where this program is built without CLAP.
std::span<const Check> clapChecks();

} // namespace mirelon::validator
