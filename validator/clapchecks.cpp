#include "validator/clapchecks.h"

#include <vector>

namespace mirelon::validator {

std::span<const Check> clapChecks() {
    static const std::vector<Check> all = [] {
        std::vector<Check> table;
        for (const auto family :
             {clapEntryChecks, clapHostChecks, clapParameterChecks, clapStateChecks,
              clapEventChecks, clapActivationChecks, clapRealTimeChecks}) {
            const std::span<const Check> own = family();
            table.insert(table.end(), own.begin(), own.end());
        }
        return table;
    }();
    return all;
}

} // namespace mirelon::validator
