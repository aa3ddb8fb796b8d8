#include "formats/lv2/bankmessage.h"

#include "formats/lv2/names.h"

#include <algorithm>
#include <cstring>
#include <lv2/atom/atom.h>

namespace mirelon::lv2 {

namespace {

constexpr std::size_t headerSize = sizeof(LV2_Atom);
constexpr std::size_t objectHeaderSize = sizeof(LV2_Atom_Object);
constexpr std::size_t propertyHeaderSize = sizeof(LV2_Atom_Property_Body);
static_assert(getMessageSize == objectHeaderSize);
static_assert(bankMessageSize == (objectHeaderSize + propertyHeaderSize + chunkSize + 7) / 8 * 8);

// The record at the beginning of `bytes`, which are enough.
template <typename Record>
Record recordAt(std::span<const std::byte> bytes) noexcept {
    Record record;
    std::memcpy(&record, bytes.data(), sizeof record);
    return record;
}

template <typename Message>
Message objectOf(const MessageTypes& types, LV2_URID objectClass) noexcept {
    Message message{};
    const LV2_Atom_Object object{
        {static_cast<std::uint32_t>(message.size() - headerSize), types.object}, {0, objectClass}};
    std::memcpy(message.data(), &object, sizeof object);
    return message;
}

// The value of the first property `key` of an object's properties; empty when
// there is none of the type.
std::span<const std::byte> propertyOf(std::span<const std::byte> properties, LV2_URID key,
                                      LV2_URID type) noexcept {
    while (properties.size() >= propertyHeaderSize) {
        const auto property = recordAt<LV2_Atom_Property_Body>(properties);
        properties = properties.subspan(propertyHeaderSize);
        const std::size_t size = property.value.size;
        if (size > properties.size())
            break;
        if (property.key == key && property.value.type == type)
            return properties.first(size);
        properties = properties.subspan(std::min((size + 7) / 8 * 8, properties.size()));
    }
    return {};
}

} // namespace

MessageTypes::MessageTypes(const LV2_URID_Map* map) {
    if (map == nullptr)
        return;
    const auto number = [map](const char* uri) { return map->map(map->handle, uri); };
    sequence = number(LV2_ATOM__Sequence);
    eventTransfer = number(LV2_ATOM__eventTransfer);
    object = number(LV2_ATOM__Object);
    chunk = number(LV2_ATOM__Chunk);
    getClass = number(getClassUri);
    bankClass = number(bankClassUri);
    bankProperty = number(bankPropertyUri);
}

GetMessage formGetMessage(const MessageTypes& types) noexcept {
    return objectOf<GetMessage>(types, types.getClass);
}

BankMessage formBankMessage(const MessageTypes& types,
                            std::span<const std::byte, chunkSize> bank) noexcept {
    auto message = objectOf<BankMessage>(types, types.bankClass);
    const LV2_Atom_Property_Body property{types.bankProperty, 0, {chunkSize, types.chunk}};
    std::memcpy(&message[objectHeaderSize], &property, sizeof property);
    std::memcpy(&message[objectHeaderSize + sizeof property], bank.data(), bank.size());
    return message;
}

MessageKind readMessage(std::span<const std::byte> bytes, const MessageTypes& types,
                        ChunkImage& bank) noexcept {
    if (!types.known() || bytes.size() < objectHeaderSize)
        return MessageKind::other;
    const auto object = recordAt<LV2_Atom_Object>(bytes);
    if (object.atom.type != types.object || object.atom.size > bytes.size() - headerSize ||
        object.atom.size < objectHeaderSize - headerSize)
        return MessageKind::other;
    if (object.body.otype == types.getClass)
        return MessageKind::get;
    if (object.body.otype != types.bankClass)
        return MessageKind::other;
    const auto properties = bytes.first(headerSize + object.atom.size).subspan(objectHeaderSize);
    const auto value = propertyOf(properties, types.bankProperty, types.chunk);
    if (value.size() != bank.size())
        return MessageKind::other;
    std::ranges::copy(value, bank.begin());
    return MessageKind::bank;
}

} // namespace mirelon::lv2
