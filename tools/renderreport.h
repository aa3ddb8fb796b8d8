// What a render tells of its work.
#pragma once

#include "tools/rendering.h"

#include <cstdio>
#include <nlohmann/json_fwd.hpp>

namespace mirelon::tools {

// Of the JSON that render prints; grows when a member changes its meaning or goes.
constexpr int renderReportVersion = 1;

// One file's entry of it.
nlohmann::ordered_json toJson(const RenderJob& job, const RenderReport& report);

void print(const RenderJob& job, const RenderReport& report, std::FILE* to);

} // namespace mirelon::tools
