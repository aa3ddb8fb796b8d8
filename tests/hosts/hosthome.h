// The world as a host under test sees it: a user's home with nothing in it but
// the plug-in, which is the only one on the machine.
#pragma once

#include "tests/hosts/program.h"
#include "tests/support/temporaryfolder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace mirelon::test {

class HostHome {
  public:
    // Puts `plugin` where a user's installation does: ~/.vst/mirelon.so, or
    // ~/.clap/mirelon.clap.
    explicit HostHome(const std::filesystem::path& plugin);

    const std::filesystem::path& plugin() const { return pluginFile; }
    std::filesystem::path operator/(std::string_view name) const { return folder / name; }

    // Variables that every program of this user gets from now on.
    void addEnvironment(const Environment& more) { own.insert(more.begin(), more.end()); }
    // The user's environment, with more variables added or replaced.
    Environment environment(const Environment& more = {}) const;
    // Runs a program as this user.
    Outcome run(const std::vector<std::string>& command, std::chrono::seconds limit,
                const Environment& more = {}) const;

  private:
    TemporaryFolder folder;
    Environment own;
    std::filesystem::path pluginFile;
};

} // namespace mirelon::test
