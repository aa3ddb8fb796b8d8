// The window of a CLAP plug-in, embedded in an X11 one.
#pragma once

#include "hosting/clapinstance.h"

#include <cstdint>
#include <optional>

namespace mirelon::hosting {

// One thread, the main one. `instance` must outlive it.
class ClapEditor {
  public:
    explicit ClapEditor(ClapInstance& instance) noexcept
        : instance(instance) {}
    ~ClapEditor() { close(); }
    ClapEditor(const ClapEditor&) = delete;
    ClapEditor& operator=(const ClapEditor&) = delete;

    // Whether the plug-in has such a window.
    bool exists() const;
    // In this window, by its X11 number; one that is open is closed before. False when
    // the plug-in has none or cannot.
    bool open(std::uintptr_t parent);
    void close();

    struct Size {
        std::uint32_t width;
        std::uint32_t height;
    };
    // Before it is open the size is asked for as hosts do.
    std::optional<Size> size();

  private:
    const clap_plugin* plugin() const noexcept { return &instance.plugin(); }
    bool create();

    ClapInstance& instance;
    bool isOpen = false;
};

} // namespace mirelon::hosting
