// An Ardour session on disk, and what its command-line interpreter cannot put
// into it.
#pragma once

#include "tests/hosts/stereofile.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace mirelon::test {

class ArdourSession {
  public:
    static constexpr int rate = 48000;

    explicit ArdourSession(std::filesystem::path sessionFolder)
        : folder(std::move(sessionFolder)) {}

    std::string path() const { return folder; }
    // The only track plays this audio from the session's start.
    void putOnTrack(const Stereo& audio) const;
    // What the plug-in gave the host to keep.
    std::vector<std::byte> chunk() const;
    void setChunk(const std::vector<std::byte>& bytes) const;
    // The plug-in's window opens with the session, its corner at this point. The
    // plug-in is the one of this type.
    void showPluginWindowAt(int x, int y, const std::string& type = "lxvst") const;
    // What the script bounce.lua has written under this name.
    Stereo bounced(const std::string& name) const;

  private:
    std::string description() const;
    void describe(const std::string& xml) const;

    std::filesystem::path folder;
};

} // namespace mirelon::test
