#include "tools/nearestname.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace mirelon::tools {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string folded(std::string_view text) {
    std::string result{trimmed(text)};
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

// How far a text is from the nearest beginning of a name, which is what people
// type of a long one, and, among equals, from the whole of it.
using Distance = std::pair<std::size_t, std::size_t>;

// Levenshtein's, with one row of the table at a time.
Distance editDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return {*std::min_element(row.begin(), row.end()), row.back()};
}

} // namespace

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool sameName(std::string_view a, std::string_view b) {
    return folded(a) == folded(b);
}

std::optional<std::size_t> findName(std::string_view wanted, std::span<const std::string> names) {
    if (trimmed(wanted).empty())
        return std::nullopt;
    const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
        return sameName(wanted, name);
    });
    if (found == names.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - names.begin());
}

const std::string* nearestName(std::string_view wanted, std::span<const std::string> names) {
    const std::string key = folded(wanted);
    const std::string* nearest = nullptr;
    Distance least;
    for (const std::string& name : names) {
        if (trimmed(name).empty())
            continue;
        const Distance distance = editDistance(key, folded(name));
        if (nearest == nullptr || distance < least) {
            nearest = &name;
            least = distance;
        }
    }
    return nearest;
}

std::string unknownName(std::string_view kind, std::string_view wanted,
                        std::span<const std::string> names) {
    std::string message = "unknown " + std::string(kind) + " \"" + std::string(wanted) + '"';
    if (const std::string* const nearest = nearestName(wanted, names))
        message += ", the nearest is \"" + *nearest + '"';
    return message;
}

} // namespace mirelon::tools
