// What an LV2 host hands over: a sequence of atoms, and one atom for the window.
#include "formats/lv2/bankmessage.h"
#include "formats/lv2/eventsequence.h"
#include "fuzz/input.h"

using namespace mirelon;
using fuzz::expect;
using lv2::MessageKind;

namespace {

// Small numbers, so that chance finds them.
lv2::MessageTypes smallTypes() {
    lv2::MessageTypes types;
    types.sequence = 1;
    types.eventTransfer = 2;
    types.object = 3;
    types.chunk = 4;
    types.getClass = 5;
    types.bankClass = 6;
    types.bankProperty = 7;
    return types;
}

void read(std::span<const std::byte> atom) {
    static const lv2::MessageTypes types = smallTypes();
    ChunkImage bank{};
    if (lv2::readMessage(atom, types, bank) != MessageKind::bank)
        return;
    // What is read as a bank is formed and read again as the same.
    ChunkImage again{};
    expect(lv2::readMessage(lv2::formBankMessage(types, bank), types, again) == MessageKind::bank);
    expect(again == bank);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const bool alone = input.take<std::uint8_t>() % 2 == 0;
    const std::size_t length = input.left();
    if (alone) {
        read(input.bytes(length));
        return 0;
    }
    // Aligned, as sequences are; memory of exactly the size that it claims.
    std::vector<std::uint64_t> words(2 + length / 8);
    auto* const sequence = reinterpret_cast<LV2_Atom_Sequence*>(words.data());
    const auto bytes = input.bytes(length / 8 * 8);
    if (!bytes.empty())
        std::memcpy(&words[2], bytes.data(), bytes.size());
    sequence->atom = {static_cast<std::uint32_t>(8 * (words.size() - 1)), 1};
    sequence->body = {0, 0};
    lv2::forEachAtom(sequence, 1, read);
    return 0;
}
