// A folder of preferences of its own, and what is seen of it.
#pragma once

#include "platform/preferences.h"

#include "tests/support/temporaryfolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace mirelon::test {

class PreferenceFaults : public testing::Test {
  protected:
    std::optional<std::string> read(std::string_view key) const {
        return Preferences(folder.path.string()).get(key);
    }
    bool store(std::string_view key, std::string_view value) const {
        Preferences preferences(folder.path.string());
        preferences.set(key, value);
        return preferences.synchronise();
    }
    std::filesystem::path aside(int number) const {
        return storeFile.string() + ".damaged-" + std::to_string(number);
    }
    int filesInFolder() const {
        return static_cast<int>(
            std::distance(std::filesystem::directory_iterator(folder.path), {}));
    }

    const TemporaryFolder folder;
    const std::filesystem::path storeFile = folder.path / PreferenceStore::fileName;
};

} // namespace mirelon::test
