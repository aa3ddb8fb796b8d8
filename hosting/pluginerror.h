// Why a plug-in could not be loaded or be asked what was asked of it.
#pragma once

#include <stdexcept>

namespace mirelon::hosting {

// The text is one line that names the file, fit to be shown to a user.
class PluginError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace mirelon::hosting
