#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

namespace krel::Native {

using Bytes = std::vector<std::uint8_t>;

/// A place in a section that depends on the address of a symbol. What has to be done there is the
/// type's business (R_X86_64_... of <elf.h>).
struct Relocation {
    std::uint64_t offset;
    std::uint32_t type;
    std::uint32_t symbol;  // index in the object's symbols
    std::int64_t addend;
};

/// A section that takes memory when the program runs. Numbers and flags are those of <elf.h>.
struct Section {
    std::string_view name;
    std::uint32_t type = 0;   // SHT_...
    std::uint64_t flags = 0;  // SHF_...
    std::uint64_t alignment = 1;
    std::uint64_t size = 0;
    Bytes bytes;  // as many as the size says; none for SHT_NOBITS
    std::vector<Relocation> relocations;
};

struct Symbol {
    /// The section of a symbol that another object has to define.
    static constexpr std::uint32_t undefined = std::numeric_limits<std::uint32_t>::max();

    std::string_view name;
    std::uint8_t type = 0;  // STT_...
    bool isGlobal = false;
    std::uint32_t section = undefined;  // index in the object's sections
    std::uint64_t value = 0;            // offset in the section
    std::uint64_t size = 0;

    bool isDefined() const { return section != undefined; }
};

/// What the linker puts together: made by the assembler, or read from a file. Names are views of
/// the text or the file that it was made of, which has to live as long.
struct ObjectFile {
    std::vector<Section> sections;
    std::vector<Symbol> symbols;
};

}  // namespace krel::Native
