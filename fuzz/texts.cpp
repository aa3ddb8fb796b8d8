// Display texts: any bits as a value; and any text as one of a value.
#include "fuzz/input.h"
#include "processor/core/parameters.h"
#include "processor/core/parametertext.h"

#include <array>

using namespace mirelon;
using fuzz::expect;

namespace {

// What every text function promises: at most 31 characters and a terminator,
// or a buffer left as it was.
template <typename Write>
void check(Write write) {
    constexpr std::size_t promised = 32;
    constexpr char canary = '\x7e';
    std::vector<char> buffer(promised, canary);
    write(buffer.data());
    const std::size_t length = strnlen(buffer.data(), buffer.size());
    expect(length < buffer.size() || std::ranges::count(buffer, canary) == promised);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto value = input.take<float>();
    const int digits = int{input.take<std::uint8_t>()} - 128; // below 0 as well
    const auto index = input.take<std::int32_t>();
    check([&](char* text) { float2string2(value, digits, text); });
    constexpr std::array converters{
        parameterNameStringConvert, percentStringConvert, dBStringConvert,   panoramaStringConvert,
        frequencyStringConvert,     dampStringConvert,    stepStringConvert, strictStringConvert};
    for (const auto convert : converters)
        check([&](char* text) { convert(value, text); });
    Coefficients coefficients;
    for (const int i : {index, index % kNumParams}) {
        applyParameter(coefficients, i, value);
        check([&](char* text) { parameterDisplay(i, value, coefficients, text); });
        workingValue(coefficients, i);
    }
    const auto read = parameterValueOf(index % kNumParams, input.text(80));
    expect(!read || (*read >= 0.0F && *read <= 1.0F));
    return 0;
}
