// The messages between the LV2 plug-in and its window, as atoms: "give me the
// bank" and "this is the bank". Pure byte functions.
#pragma once

#include "presetsystem/chunkimage.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <lv2/urid/urid.h>
#include <span>

namespace mirelon::lv2 {

// The host's numbers for the types of which messages are made; all 0 where the
// host has none, and then no message is read or formed.
struct MessageTypes {
    MessageTypes() = default;
    // `map` may be null.
    explicit MessageTypes(const LV2_URID_Map* map);

    bool known() const noexcept { return sequence != 0; }

    LV2_URID sequence = 0;
    LV2_URID eventTransfer = 0;
    LV2_URID object = 0;
    LV2_URID chunk = 0;
    LV2_URID getClass = 0;
    LV2_URID bankClass = 0;
    LV2_URID bankProperty = 0;
};

// Whole atoms, header included.
inline constexpr std::size_t getMessageSize = 16;
inline constexpr std::size_t bankMessageSize = 728;
struct alignas(8) GetMessage : std::array<std::byte, getMessageSize> {};
struct alignas(8) BankMessage : std::array<std::byte, bankMessageSize> {};

GetMessage formGetMessage(const MessageTypes& types) noexcept;
BankMessage formBankMessage(const MessageTypes& types,
                            std::span<const std::byte, chunkSize> bank) noexcept;

enum class MessageKind {
    get,
    bank,  // `bank` has been filled; whether it is ours is for the effect to judge
    other, // somebody else's, or damaged
};

// Reads an atom of any origin, which need not be aligned. What follows the
// atom in `bytes` does not count.
MessageKind readMessage(std::span<const std::byte> bytes, const MessageTypes& types,
                        ChunkImage& bank) noexcept;

} // namespace mirelon::lv2
