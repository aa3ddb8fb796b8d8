// Why an effect could not be hosted as asked.
#pragma once

#include <stdexcept>

namespace mirelon::hosting {

// The text is one line, fit to be shown to a user.
class HostingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A plug-in could not be loaded or be asked what was asked of it.
class PluginError : public HostingError {
  public:
    using HostingError::HostingError;
};

// There is no desktop to put a window on, or no room for it.
class DisplayError : public HostingError {
  public:
    using HostingError::HostingError;
};

} // namespace mirelon::hosting
