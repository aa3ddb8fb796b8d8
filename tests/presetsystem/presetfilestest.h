// An effect with a scripted editor and a folder for preset and bank files.
#pragma once

#include "tests/presetsystem/scriptededitor.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace mirelon::test {

class PresetFilesTest : public testing::Test {
  protected:
    void SetUp() override { editor().makeFrame(); }
    // The window goes before the instance does.
    void TearDown() override {
        if (instance)
            editor().dropFrame();
    }

    ScriptedEditor& editor() { return *instance->editor; }
    RecordingEffect& effect() { return instance->effect; }
    void answer(const std::filesystem::path& path) {
        editor().user->answers.emplace_back(path.string());
    }

    const TemporaryFolder folder;
    std::optional<ScriptedInstance> instance{std::in_place, folder / "config"};
};

inline std::string presetFileOf(RecordingEffect& effect, int preset) {
    return "tSeT\x21" + effect.bytes().substr(static_cast<std::size_t>(preset) * 60, 60);
}

inline std::string bankFileOf(RecordingEffect& effect) {
    return "tSeT\x37" + effect.bytes();
}

} // namespace mirelon::test
