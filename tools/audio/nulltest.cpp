#include "tools/audio/nulltest.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace mirelon::tools {

namespace {

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

void NullTest::addDifferent(double a, double b) {
    if (same(a, b))
        return;
    const double difference = std::abs(a - b);
    const double distance =
        std::isnan(difference) ? std::numeric_limits<double>::infinity() : difference;
    largest = std::max(largest, distance);
    squares += distance * distance;
}

void NullTest::add(Block leftA, Block rightA, Block leftB, Block rightB) {
    for (std::size_t i = 0; i < leftA.size(); ++i) {
        if (same(leftA[i], leftB[i]) && same(rightA[i], rightB[i]))
            continue;
        addDifferent(leftA[i], leftB[i]);
        addDifferent(rightA[i], rightB[i]);
        ++different;
        if (!first)
            first = frames + i;
    }
    frames += leftA.size();
}

void NullTest::addExcess(std::uint64_t more) {
    if (more > 0 && !first)
        first = frames;
    different += more;
}

double NullTest::rms() const noexcept {
    return frames == 0 ? 0.0 : std::sqrt(squares / (2.0 * static_cast<double>(frames)));
}

} // namespace mirelon::tools
