#include "validator/check.h"

#include <algorithm>
#include <vector>

namespace mirelon::validator {

std::span<const Check> checks() {
    static const std::vector<Check> all = [] {
        std::vector<Check> table;
        for (const auto family :
             {loadingChecks, identityChecks, audioChecks, stateChecks, automationChecks,
              editorChecks, lifecycleChecks, parameterFuzzChecks, stateFuzzChecks, threadChecks,
              realTimeChecks, noteChecks, messageChecks, clapChecks}) {
            const std::span<const Check> own = family();
            table.insert(table.end(), own.begin(), own.end());
        }
        std::ranges::stable_sort(table, {}, &Check::level);
        return table;
    }();
    return all;
}

const Check* findCheck(const std::string& name) {
    const auto all = checks();
    const auto found = std::ranges::find_if(all, [&](const Check& c) { return c.name == name; });
    return found != all.end() ? &*found : nullptr;
}

} // namespace mirelon::validator
