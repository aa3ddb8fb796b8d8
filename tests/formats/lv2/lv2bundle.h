// The built bundle, as a host loads it.
#pragma once

#include "formats/lv2/bankmessage.h"
#include "formats/lv2/names.h"
#include "hosting/lv2instance.h"

#include <vector>

namespace mirelon::test {

// Loaded once per test program.
inline const hosting::Lv2Bundle& lv2Bundle() {
    static const hosting::Lv2Bundle bundle(MIRELON_LV2_BUNDLE, lv2::pluginUri);
    return bundle;
}

// The numbers of the host of that bundle.
inline const lv2::MessageTypes& lv2Types() {
    static const lv2::MessageTypes types(lv2Bundle().numbers().map());
    return types;
}

// The banks among the messages that an instance has sent.
inline std::vector<ChunkImage> banksIn(const std::vector<std::vector<std::byte>>& atoms) {
    std::vector<ChunkImage> banks;
    for (const auto& atom : atoms) {
        ChunkImage bank;
        if (lv2::readMessage(atom, lv2Types(), bank) == lv2::MessageKind::bank)
            banks.push_back(bank);
    }
    return banks;
}

// A state with these bytes as the bank.
inline hosting::Lv2State lv2State(std::vector<std::byte> bytes,
                                  const char* type = LV2_ATOM__Chunk) {
    return {
        {lv2::bankPropertyUri, {std::move(bytes), type, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE}}};
}

inline std::vector<std::byte> bytesOf(const ChunkImage& bank) {
    return {bank.begin(), bank.end()};
}

} // namespace mirelon::test
