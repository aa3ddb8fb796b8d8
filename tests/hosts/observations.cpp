#include "tests/hosts/observations.h"

#include "tests/support/temporaryfolder.h"

#include <map>
#include <sstream>
#include <stdexcept>

namespace mirelon::test {
namespace {

Observation parsed(const std::string& line) {
    static const std::map<std::string, Observation::Kind> kinds{
        {"asks", Observation::Kind::asks},
        {"tells", Observation::Kind::tells},
        {"sets", Observation::Kind::sets},
        {"plays", Observation::Kind::plays},
        {"plays-double", Observation::Kind::playsDouble}};
    std::istringstream words(line);
    Observation observation;
    std::string kind;
    words >> observation.thread >> kind;
    observation.kind = kinds.at(kind);
    std::string equals;
    switch (observation.kind) {
    case Observation::Kind::asks:
        words >> observation.opcode >> observation.index >> observation.value >> observation.opt >>
            equals >> observation.result;
        break;
    case Observation::Kind::tells:
        words >> observation.opcode >> observation.index >> observation.value >> observation.opt;
        break;
    case Observation::Kind::sets:
        words >> observation.index >> observation.opt;
        break;
    case Observation::Kind::plays:
    case Observation::Kind::playsDouble:
        words >> observation.value;
        break;
    }
    if (!words)
        throw std::runtime_error("not an observation: " + line);
    words >> observation.extra;
    return observation;
}

} // namespace

Observations observationsIn(const std::filesystem::path& file) {
    const std::string text = contentsOf(file);
    std::istringstream lines(text.substr(0, text.rfind('\n') + 1));
    Observations observations;
    for (std::string line; std::getline(lines, line);)
        observations.push_back(parsed(line));
    return observations;
}

std::filesystem::path observer() {
    return MIRELON_OBSERVER_FILE;
}

Environment observing(const std::filesystem::path& file) {
    return {{"MIRELON_OBSERVED", MIRELON_PLUGIN_FILE}, {"MIRELON_OBSERVATIONS", file}};
}

} // namespace mirelon::test
