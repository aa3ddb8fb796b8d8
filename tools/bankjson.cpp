#include "tools/bankjson.h"

#include "hosting/fourcharacters.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <glib.h>
#include <initializer_list>
#include <nlohmann/json.hpp>

namespace mirelon::tools {

namespace {

using Json = nlohmann::ordered_json;
using NameBytes = std::array<std::byte, kPresetNameLen>;

NameBytes nameBytes(const PresetRecord& preset) {
    std::array<std::byte, PresetRecord::imageSize> image{};
    preset.writeTo(image);
    NameBytes bytes{};
    std::copy_n(image.begin(), bytes.size(), bytes.begin());
    return bytes;
}

constexpr const char* hexDigits = "0123456789ABCDEF";

// The shortest number that is this value again: 0.3, not 0.30000001192092896.
Json jsonOfValue(float value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    double number = value;
    if (std::isfinite(value))
        std::from_chars(text.data(), end, number);
    return number;
}

Json jsonOfName(const PresetRecord& preset) {
    PresetRecord clean = preset;
    const std::string text = nameOf(preset);
    clean.setName(text);
    if (clean.nameWords == preset.nameWords && g_utf8_validate(text.c_str(), -1, nullptr) != 0)
        return text;
    std::string digits;
    for (const std::byte byte : nameBytes(preset)) {
        const auto number = std::to_integer<unsigned>(byte);
        digits += hexDigits[number >> 4U];
        digits += hexDigits[number & 0xFU];
    }
    return {{"bytes", digits}};
}

[[noreturn]] void refuse(const std::string& place, const std::string& why) {
    throw CommandError((place.empty() ? std::string("the bank") : place) + ": " + why);
}

// The member `key` of an object.
const Json& member(const Json& object, const std::string& place, const std::string& key) {
    if (!object.is_object())
        refuse(place, "is no object");
    const auto found = object.find(key);
    if (found == object.end())
        refuse(place, "\"" + key + "\" is missing");
    return *found;
}

// A mistyped key would be lost silently.
template <typename Keys>
void requireOnly(const Json& object, const std::string& place, const Keys& known) {
    for (const auto& item : object.items())
        if (std::ranges::find(known, item.key()) == std::end(known))
            refuse(place, "\"" + item.key() + "\" is not known");
}

// Grows when a member changes its meaning or goes.
constexpr int formatVersion = 1;

std::string nameFromBytes(const Json& value, const std::string& place) {
    const Json& digits = member(value, place, "bytes");
    const std::string text = digits.is_string() ? digits.get<std::string>() : "";
    if (text.size() != 2 * kPresetNameLen ||
        text.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos)
        refuse(place, "\"bytes\" are not 48 hexadecimal digits");
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 2)
        bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    return bytes;
}

std::string nameFrom(const Json& value, const std::string& place) {
    if (!value.is_string())
        return nameFromBytes(value, place);
    std::string name = value.get<std::string>();
    if (name.size() > kPresetNameLen)
        refuse(place, std::to_string(name.size()) + " bytes, 24 is the most");
    if (name.find('\0') != std::string::npos)
        refuse(place, "contains a zero");
    return name;
}

float valueFrom(const Json& value, const std::string& place) {
    if (!value.is_number())
        refuse(place, "is no number");
    const auto number = value.get<float>();
    if (!isNormalised(number))
        refuse(place, value.dump() + " is not 0 to 1");
    return number;
}

std::endian orderFrom(const Json& orders, const char* key) {
    const Json& value = member(orders, "byteOrder", key);
    for (const std::endian order : {std::endian::big, std::endian::little})
        if (value == orderName(order))
            return order;
    refuse(std::string("byteOrder.") + key, "is neither \"big\" nor \"little\"");
}

PresetRecord presetFrom(const Json& value, const std::string& place,
                        std::span<const std::string> parameters) {
    PresetRecord preset{};
    preset.setName(nameFrom(member(value, place, "name"), place + ".name"));
    const Json& values = member(value, place, "values");
    const std::string valuesPlace = place + ".values";
    for (int j = 0; j < kNumPresetParams; ++j) {
        const std::string& parameter = parameters[static_cast<std::size_t>(j)];
        std::string valuePlace = valuesPlace;
        valuePlace.append(".").append(parameter);
        preset.setValue(j, valueFrom(member(values, valuesPlace, parameter), valuePlace));
    }
    requireOnly(values, valuesPlace, parameters);
    requireOnly(value, place, std::initializer_list<const char*>{"name", "values"});
    return preset;
}

} // namespace

std::string jsonOf(const ImageFile& bank, VstInt32 ownerId,
                   std::span<const std::string> parameters) {
    Json presets = Json::array();
    for (const PresetRecord& preset : bank.presets) {
        Json values = Json::object();
        for (int j = 0; j < kNumPresetParams; ++j)
            values[parameters[static_cast<std::size_t>(j)]] = jsonOfValue(preset.value(j));
        presets.push_back({{"name", jsonOfName(preset)}, {"values", std::move(values)}});
    }
    const Json all{
        {"version", formatVersion},
        {"bank", hosting::fourCharacterText(ownerId)},
        {"byteOrder",
         {{"owner", orderName(bank.ownerOrder)}, {"values", orderName(bank.valueOrder)}}},
        {"presets", std::move(presets)}};
    return all.dump(2) + '\n';
}

ImageFile bankFromJson(const std::string& text, VstInt32 ownerId,
                       std::span<const std::string> parameters) {
    Json all;
    try {
        all = Json::parse(text);
    } catch (const Json::exception& error) { // a number beyond a double is not a parse error
        const std::string why = error.what();
        refuse("no JSON", why.substr(why.find("] ") == std::string::npos ? 0 : why.find("] ") + 2));
    }
    if (all.is_object() && all.value("version", Json(formatVersion)) != formatVersion)
        refuse("version", "is not " + std::to_string(formatVersion) + ", which is known here");
    if (member(all, "", "bank") != hosting::fourCharacterText(ownerId))
        refuse("bank", "is not \"" + hosting::fourCharacterText(ownerId) + "\", this plug-in");
    ImageFile bank{ImageKind::bank, std::endian::native, std::endian::big, {}};
    if (const auto orders = all.find("byteOrder"); orders != all.end()) {
        bank.ownerOrder = orderFrom(*orders, "owner");
        bank.valueOrder = orderFrom(*orders, "values");
        requireOnly(*orders, "byteOrder", std::initializer_list<const char*>{"owner", "values"});
    }
    const Json& presets = member(all, "", "presets");
    if (!presets.is_array() || presets.size() != kNumPresets)
        refuse("presets", "are not " + std::to_string(kNumPresets));
    for (std::size_t i = 0; i < presets.size(); ++i)
        bank.presets.push_back(
            presetFrom(presets[i], "presets[" + std::to_string(i) + ']', parameters));
    requireOnly(all, "",
                std::initializer_list<const char*>{"version", "bank", "byteOrder", "presets"});
    return bank;
}

} // namespace mirelon::tools
