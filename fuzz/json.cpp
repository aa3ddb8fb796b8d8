// A bank as JSON: any text is a bank or is refused with a message; a bank comes
// back from its own JSON byte for byte.
#include "fuzz/input.h"
#include "tools/bankjson.h"
#include "tools/commanderror.h"

#include <array>
#include <string>

using namespace mirelon;
using fuzz::expect;

namespace {

constexpr std::int32_t owner = 0x4D724C6E;

const std::array<std::string, kNumPresetParams> parameters{
    "width", "gain", "balance", "stability", "centerPos", "process", "phase", "-L", "-R"};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        const tools::ImageFile bank = tools::bankFromJson(text, owner, parameters);
        const std::string written = tools::jsonOf(bank, owner, parameters);
        expect(tools::bytesOf(tools::bankFromJson(written, owner, parameters), owner) ==
               tools::bytesOf(bank, owner));
    } catch (const tools::CommandError& refusal) {
        expect(*refusal.what() != '\0');
    }
    return 0;
}
