// The user's preferences: byte strings under keys, kept per user on disk and
// shared by every instance, thread and host process.
//
// What goes wrong with the disk is never more than a missing value: without a
// home, with a read-only folder, a full disk or a store held busy by another
// process, reading finds nothing and storing is without effect. A store that is
// not one (damaged, or another program's file) reads as empty; the first
// storing moves it aside, under another name, and begins a new one.
#pragma once

#include "platform/preferencestore.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirelon {

// The folder that the environment names: `example.dravik.mirelon` under
// $XDG_CONFIG_HOME or, where that is unset, empty or not absolute, under
// $HOME/.config. Empty when there is no absolute path to be had.
std::string userPreferencesFolder();

// A view of the store. Reading creates neither file nor folder. One object is
// for one thread at a time. Nothing throws.
class Preferences {
  public:
    // `folder` is created by the first storing, with its parent; empty: there
    // is no store.
    explicit Preferences(std::string folder) noexcept;

    // As this object has set it, else as the store has it at this moment.
    std::optional<std::string> get(std::string_view key) const noexcept;
    // Changes that take effect together with the next synchronise().
    void set(std::string_view key, std::string_view value) noexcept;
    void remove(std::string_view key) noexcept;
    // Stores all changes in one transaction: on return they are on disk for
    // every other process to see, or (false) none of them is and they are
    // dropped. True when there was nothing to change.
    bool synchronise() noexcept;

  private:
    void change(std::string_view key, std::optional<std::string_view> value) noexcept;

    PreferenceStore store;
    std::vector<PreferenceChange> changes;
};

} // namespace mirelon
