// The families of checks of CLAP plug-ins, one file each.
#pragma once

#include "validator/check.h"

#include <span>

namespace mirelon::validator {

std::span<const Check> clapEntryChecks();
std::span<const Check> clapHostChecks();
std::span<const Check> clapParameterChecks();
std::span<const Check> clapStateChecks();
std::span<const Check> clapEventChecks();
std::span<const Check> clapActivationChecks();
std::span<const Check> clapRealTimeChecks();

} // namespace mirelon::validator
