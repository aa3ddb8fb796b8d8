// Automation in a Qtractor session: its curves stand in a MIDI file of
// non-registered parameters beside the session, 14 bits a point.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace mirelon::test::qtractor {

struct CurvePoint {
    double seconds; // at 120 beats a minute, as the session's tempo is
    double value;   // 0 to 1 of the parameter's range
};

// Writes the points of a curve that is the only one in its file.
void writeCurve(const std::filesystem::path& file, const std::vector<CurvePoint>& points);

// What Qtractor has written; throws std::runtime_error when there is anything else
// in it.
std::vector<CurvePoint> curveIn(const std::filesystem::path& file);

} // namespace mirelon::test::qtractor
