// A CLAP host's stream as the state: any bytes, in parts of any size.
#include "formats/clap/clapwrapper.h"
#include "fuzz/input.h"
#include "hosting/clapstreams.h"

using namespace mirelon;
using fuzz::expect;

namespace {

std::vector<std::byte> saved(clap::ClapWrapper& wrapper, std::size_t step) {
    const hosting::ClapOutputStream stream(step);
    expect(wrapper.save(*stream.stream()));
    return stream.bytes();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const clap::HostLink noHost(nullptr);
    static clap::ClapWrapper wrapper(noHost);
    fuzz::Input input(data, size);
    const std::size_t step = 1 + input.take<std::uint8_t>();
    const auto bytes = input.bytes(input.left());
    const auto before = saved(wrapper, step);
    const hosting::ClapInputStream stream(bytes, step);
    const bool taken = wrapper.load(*stream.stream());
    const auto after = saved(wrapper, step);
    expect(after.size() == chunkSize);
    if (!taken) {
        expect(after == before);
        return 0;
    }
    // What has been taken is a state that is taken again, and stays the same.
    const hosting::ClapInputStream again(after, step);
    expect(bytes.size() == chunkSize && wrapper.load(*again.stream()));
    expect(saved(wrapper, step) == after);
    return 0;
}
