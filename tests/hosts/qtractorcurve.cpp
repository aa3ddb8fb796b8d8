#include "tests/hosts/qtractorcurve.h"

#include "tests/support/temporaryfolder.h"

#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace mirelon::test::qtractor {
namespace {

// One track, 960 ticks a beat.
constexpr std::string_view header{"MThd\0\0\0\6\0\1\0\1\3\xC0MTrk", 18};
constexpr std::string_view endOfTrack{"\0\xFF\x2F\0", 4};
constexpr double ticksPerSecond = 2 * 960;
constexpr int fullScale = 0x3FFF;

constexpr unsigned controlChange = 0xB0;
enum Controller : unsigned char {
    kDataHigh = 6,
    kDataLow = 38,
    kParameterLow = 98,
    kParameterHigh = 99
};

// Seven bits a byte, all but the last marked.
void appendLength(std::string& bytes, unsigned long number) {
    std::string text(1, static_cast<char>(number & 0x7FU));
    while ((number >>= 7U) != 0)
        text.insert(text.begin(), static_cast<char>(0x80U | (number & 0x7FU)));
    bytes += text;
}

class Reader {
  public:
    explicit Reader(std::string_view rest)
        : rest(rest) {}

    bool isAtEnd() const { return rest == endOfTrack; }
    unsigned char byte() {
        if (rest.empty())
            throw std::runtime_error("a curve's file ends early");
        const auto first = static_cast<unsigned char>(rest.front());
        rest.remove_prefix(1);
        return first;
    }
    unsigned long length() {
        unsigned long number = 0;
        for (;;) {
            const unsigned char next = byte();
            number = (number << 7U) | (next & 0x7FU);
            if (next < 0x80U)
                return number;
        }
    }
    // A controller's number; the status byte may be left out.
    unsigned char controller() {
        const unsigned char first = byte();
        if (first == controlChange)
            return byte();
        if (first >= 0x80U)
            throw std::runtime_error("a curve's file holds more than controllers");
        return first;
    }

  private:
    std::string_view rest;
};

} // namespace

void writeCurve(const std::filesystem::path& file, const std::vector<CurvePoint>& points) {
    std::string track;
    unsigned long now = 0;
    for (const CurvePoint& point : points) {
        const auto tick = static_cast<unsigned long>(std::lround(point.seconds * ticksPerSecond));
        const auto value = static_cast<unsigned>(std::lround(point.value * fullScale));
        appendLength(track, tick - now);
        now = tick;
        const auto change = [&track](Controller controller, unsigned to) {
            track += static_cast<char>(controlChange);
            track += static_cast<char>(controller);
            track += static_cast<char>(to);
        };
        change(kParameterHigh, 0);
        track += '\0';
        change(kParameterLow, 0);
        track += '\0';
        change(kDataHigh, value >> 7U);
        track += '\0';
        change(kDataLow, value & 0x7FU);
    }
    track += endOfTrack;
    std::string bytes(header);
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        bytes += static_cast<char>((track.size() >> shift) & 0xFFU);
    writeFile(file, bytes + track);
}

std::vector<CurvePoint> curveIn(const std::filesystem::path& file) {
    const std::string bytes = contentsOf(file);
    if (bytes.size() < header.size() + 4 || !bytes.starts_with(header))
        throw std::runtime_error("not a curve's file");
    Reader reader(std::string_view(bytes).substr(header.size() + 4));
    std::vector<CurvePoint> points;
    unsigned long now = 0;
    unsigned high = 0;
    while (!reader.isAtEnd()) {
        now += reader.length();
        const unsigned char controller = reader.controller();
        const unsigned value = reader.byte();
        if (controller == kDataHigh)
            high = value;
        else if (controller == kDataLow)
            points.push_back({static_cast<double>(now) / ticksPerSecond,
                              static_cast<double>((high << 7U) | value) / fullScale});
    }
    return points;
}

} // namespace mirelon::test::qtractor
