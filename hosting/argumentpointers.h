// Texts as a new program takes them.
#pragma once

#include <string>
#include <vector>

namespace mirelon::hosting {

// Pointers to the texts, which must outlive them, and a null pointer at the end.
inline std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace mirelon::hosting
