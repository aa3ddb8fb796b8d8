#include "validator/elfsymbols.h"

#include "validator/check.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <elf.h>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

namespace mirelon::validator {

namespace {

constexpr std::array<std::string_view, 6> linkerSymbols{"_init", "_fini",       "_edata",
                                                        "_end",  "__bss_start", "__end__"};

// Records of type T at a place in the file's bytes.
class Image {
  public:
    explicit Image(const std::filesystem::path& file) {
        std::ifstream stream(file, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(stream), {});
    }
    template <typename T>
    T at(std::uint64_t offset) const {
        require(bytes.size() >= sizeof(T) && offset <= bytes.size() - sizeof(T),
                "is cut off or no ELF file");
        T record;
        std::memcpy(&record, bytes.data() + offset, sizeof record);
        return record;
    }
    std::string textAt(std::uint64_t offset) const {
        require(offset < bytes.size(), "has a symbol table that points outside the file");
        return {bytes.data() + offset, strnlen(bytes.data() + offset, bytes.size() - offset)};
    }

  private:
    std::vector<char> bytes;
};

bool isOffered(const Elf64_Sym& symbol) {
    const auto binding = ELF64_ST_BIND(symbol.st_info);
    const auto visibility = ELF64_ST_VISIBILITY(symbol.st_other);
    return symbol.st_shndx != SHN_UNDEF && binding != STB_LOCAL &&
           (visibility == STV_DEFAULT || visibility == STV_PROTECTED);
}

// Calls `visit` with every symbol of the tables of this type, and a function that
// reads its name.
template <typename Visit>
void visitSymbols(const Image& image, std::uint32_t table, const Visit& visit) {
    const auto header = image.at<Elf64_Ehdr>(0);
    require(std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
                header.e_ident[EI_CLASS] == ELFCLASS64,
            "is no 64-bit ELF file");
    for (unsigned i = 0; i < header.e_shnum; ++i) {
        const auto section = image.at<Elf64_Shdr>(header.e_shoff + i * sizeof(Elf64_Shdr));
        if (section.sh_type != table)
            continue;
        const auto texts =
            image.at<Elf64_Shdr>(header.e_shoff + section.sh_link * sizeof(Elf64_Shdr));
        for (std::uint64_t at = 0; at < section.sh_size; at += sizeof(Elf64_Sym)) {
            const auto symbol = image.at<Elf64_Sym>(section.sh_offset + at);
            visit(symbol, [&] { return image.textAt(texts.sh_offset + symbol.st_name); });
        }
    }
}

} // namespace

std::vector<std::string> exportedSymbols(const std::filesystem::path& file) {
    const Image image(file);
    std::vector<std::string> names;
    visitSymbols(image, SHT_DYNSYM, [&](const Elf64_Sym& symbol, const auto& nameOf) {
        if (!isOffered(symbol))
            return;
        std::string name = nameOf();
        if (std::ranges::find(linkerSymbols, name) == linkerSymbols.end())
            names.push_back(std::move(name));
    });
    return names;
}

std::string functionAt(const std::filesystem::path& file, std::uint64_t offset) {
    std::string name;
    try {
        const Image image(file);
        for (const std::uint32_t table : {std::uint32_t{SHT_SYMTAB}, std::uint32_t{SHT_DYNSYM}}) {
            visitSymbols(image, table, [&](const Elf64_Sym& symbol, const auto& nameOf) {
                if (name.empty() && ELF64_ST_TYPE(symbol.st_info) == STT_FUNC &&
                    symbol.st_value <= offset && offset < symbol.st_value + symbol.st_size)
                    name = nameOf();
            });
        }
    } catch (const Failed&) {
        return {};
    }
    return name;
}

} // namespace mirelon::validator
