// The linker: what it refuses, and the layout of what it makes.

#include "native/linker.hpp"

#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "native/assembler.hpp"
#include "native/files.hpp"
#include "native/notKnown.hpp"
#include "native/objectReader.hpp"

namespace krel::Native {

namespace {

constexpr std::uint64_t pageSize = 0x1000;

/// An executable, taken apart.
class Executable {
public:
    explicit Executable(Bytes itsBytes) : bytes(std::move(itsBytes)) {
        header = rowAt<Elf64_Ehdr>(0);
        for (std::size_t number = 0; number < header.e_phnum; ++number) {
            segments.push_back(rowAt<Elf64_Phdr>(header.e_phoff + number * sizeof(Elf64_Phdr)));
        }
        std::vector<Elf64_Shdr> rows;
        for (std::size_t number = 0; number < header.e_shnum; ++number) {
            rows.push_back(rowAt<Elf64_Shdr>(header.e_shoff + number * sizeof(Elf64_Shdr)));
        }
        for (const Elf64_Shdr& row : rows) {
            sections[textAt(rows.at(header.e_shstrndx), row.sh_name)] = row;
        }
        const Elf64_Shdr& table = sections.at(".symtab");
        for (std::size_t at = 0; at < table.sh_size; at += sizeof(Elf64_Sym)) {
            const auto symbol = rowAt<Elf64_Sym>(table.sh_offset + at);
            const std::string name = textAt(rows.at(table.sh_link), symbol.st_name);
            symbolOrder.push_back(name);
            symbols[name] = symbol;
        }
    }

    template <typename Row>
    Row rowAt(std::size_t offset) const {
        Row row;
        EXPECT_LE(offset + sizeof row, bytes.size());
        std::memcpy(&row, bytes.data() + offset, sizeof row);
        return row;
    }

    std::string textAt(const Elf64_Shdr& table, std::size_t offset) const {
        EXPECT_LT(offset, table.sh_size);
        return reinterpret_cast<const char*>(bytes.data()) + table.sh_offset + offset;
    }

    Bytes bytes;
    Elf64_Ehdr header{};
    std::vector<Elf64_Phdr> segments;
    std::map<std::string, Elf64_Shdr> sections;
    std::map<std::string, Elf64_Sym> symbols;
    std::vector<std::string> symbolOrder;
};

std::string function(const std::string& name, const std::string& lines = "") {
    return "\n\t.globl " + name + "\n\t.type " + name + ", @function\n" + name + ":\n" + lines +
           "\tret\n\t.size " + name + ", .-" + name + "\n";
}

/// Objects whose text lives as long as they do.
class Objects {
public:
    Objects& assembly(const std::string& text) {
        texts.push_back(std::make_unique<std::string>("\t.text\n" + text));
        objects.push_back(assemble(*texts.back()));
        return *this;
    }

    Objects& file(const char* path) {
        texts.push_back(std::make_unique<std::string>(FileContent{path}.text()));
        objects.push_back(readObject(*texts.back()));
        return *this;
    }

    Objects& object(ObjectFile object) {
        objects.push_back(std::move(object));
        return *this;
    }

    Bytes linked() const { return link(objects); }

    /// Why they cannot be linked; empty when they can.
    std::string refusal() const {
        try {
            link(objects);
            return "";
        } catch (const NotKnown& error) {
            return error.what();
        }
    }

private:
    std::vector<std::unique_ptr<std::string>> texts;
    std::vector<ObjectFile> objects;
};

/// A whole program, as krelcc has it built.
Executable realProgram(const std::string& functions = "") {
    return Executable{
        Objects{}
            .assembly(function("main", "\tleaq .LC0(%rip), %rdi\n\tcall krel_print@PLT\n") +
                      functions + "\n\t.section .rodata\n.LC0:\n\t.string \"text\"\n")
            .file(KREL_RUNTIME_OBJECT)
            .file(KREL_STARTUP_OBJECT)
            .linked()};
}

Section sectionOf(std::string_view name, std::uint32_t type, std::uint64_t flags,
                  std::size_t size) {
    return {.name = name,
            .type = type,
            .flags = flags,
            .alignment = 8,
            .size = size,
            .bytes = type == SHT_NOBITS ? Bytes{} : Bytes(size),
            .relocations = {}};
}

/// An object of one section, which holds the symbol `here`.
ObjectFile objectWith(Section section, std::vector<Relocation> relocations = {}) {
    section.relocations = std::move(relocations);
    return {{std::move(section)}, {{.name = "here", .isGlobal = true, .section = 0}}};
}

std::string refusalOf(Section section, std::vector<Relocation> relocations = {}) {
    return Objects{}
        .assembly(function("_start"))
        .object(objectWith(std::move(section), std::move(relocations)))
        .refusal();
}

Section code(std::size_t size = 16) {
    return sectionOf(".text", SHT_PROGBITS, SHF_ALLOC | SHF_EXECINSTR, size);
}

Section variables(std::size_t size = 16) {
    return sectionOf(".data", SHT_PROGBITS, SHF_ALLOC | SHF_WRITE, size);
}

// Names.

TEST(NativeLinkerTest, EntryIsNeeded) {
    EXPECT_EQ(Objects{}.assembly(function("_start")).refusal(), "");
    EXPECT_EQ(Objects{}.assembly(function("main")).refusal(), "a symbol is not defined: _start");
    EXPECT_EQ(Objects{}.refusal(), "a symbol is not defined: _start");
}

TEST(NativeLinkerTest, UndefinedSymbolsAreNamed) {
    EXPECT_EQ(Objects{}.assembly(function("_start", "\tcall abs@PLT\n")).refusal(),
              "a symbol is not defined: abs");
    EXPECT_EQ(Objects{}
                  .assembly(function("_start", "\tcall abs@PLT\n"))
                  .assembly(function("abs"))
                  .refusal(),
              "");
}

TEST(NativeLinkerTest, UndefinedSymbolsThatNothingRefersToDoNotMatter) {
    EXPECT_EQ(Objects{}.assembly("\t.globl unused\n" + function("_start")).refusal(), "");
}

TEST(NativeLinkerTest, SymbolsThatAreDefinedTwiceAreNamed) {
    const std::string start = function("_start");
    EXPECT_EQ(Objects{}.assembly(start + function("f")).assembly(function("f")).refusal(),
              "a symbol is defined twice: f");
    for (const char* const name :
         {"__ehdr_start", "__rela_start", "__rela_end", "__init_array_start", "__init_array_end",
          "__fini_array_start", "__fini_array_end", "__relro_start", "__relro_end"}) {
        EXPECT_EQ(Objects{}.assembly(start + function(name)).refusal(),
                  "a symbol is defined twice: " + std::string{name});
    }
}

TEST(NativeLinkerTest, LocalSymbolsMayHaveEqualNames) {
    ObjectFile object = objectWith(variables());
    object.symbols.front().isGlobal = false;
    EXPECT_EQ(Objects{}.assembly(function("_start")).object(object).object(object).refusal(), "");
}

TEST(NativeLinkerTest, LocalSymbolsOfOthersAreNotSeen) {
    ObjectFile object = objectWith(variables());
    object.symbols.front().isGlobal = false;
    EXPECT_EQ(Objects{}.assembly(function("_start", "\tcall here@PLT\n")).object(object).refusal(),
              "a symbol is not defined: here");
}

TEST(NativeLinkerTest, NamesOfTheStartUpFilesAreRefused) {
    for (const char* const name :
         {"_init", "_fini", "_edata", "_end", "__bss_start", "__data_start", "__dso_handle",
          "_IO_stdin_used", "_DYNAMIC", "__TMC_END__", "__gmon_start__", "_GLOBAL_OFFSET_TABLE_",
          "__GNU_EH_FRAME_HDR", "__libc_start_main", "__tunable_get_val", "_dl_audit_preinit"}) {
        EXPECT_EQ(Objects{}.assembly(function("_start") + function(name)).refusal(),
                  "the name has a meaning for C: " + std::string{name});
        // Calling them needs the C library in any case.
        EXPECT_NE(Objects{}
                      .assembly(function("_start", "\tcall " + std::string{name} + "@PLT\n"))
                      .refusal(),
                  "");
    }
}

// Sections and relocations.

TEST(NativeLinkerTest, KnownSectionsAreTaken) {
    EXPECT_EQ(refusalOf(code()), "");
    EXPECT_EQ(refusalOf(variables()), "");
    EXPECT_EQ(refusalOf(sectionOf(".rodata.str1.1", SHT_PROGBITS,
                                  SHF_ALLOC | SHF_MERGE | SHF_STRINGS, 16)),
              "");
    EXPECT_EQ(refusalOf(sectionOf(".bss", SHT_NOBITS, SHF_ALLOC | SHF_WRITE, 16)), "");
    EXPECT_EQ(refusalOf(sectionOf(".init_array", SHT_INIT_ARRAY, SHF_ALLOC | SHF_WRITE, 16)), "");
    EXPECT_EQ(refusalOf(sectionOf(".fini_array", SHT_FINI_ARRAY, SHF_ALLOC | SHF_WRITE, 16)), "");
}

TEST(NativeLinkerTest, UnknownSectionsAreNamed) {
    for (const Section& section :
         {sectionOf(".tdata", SHT_PROGBITS, SHF_ALLOC | SHF_WRITE | SHF_TLS, 16),
          sectionOf(".tbss", SHT_NOBITS, SHF_ALLOC | SHF_WRITE | SHF_TLS, 16),
          sectionOf(".both", SHT_PROGBITS, SHF_ALLOC | SHF_WRITE | SHF_EXECINSTR, 16),
          sectionOf(".note.x", SHT_NOTE, SHF_ALLOC, 16),
          sectionOf(".eh_frame", SHT_X86_64_UNWIND, SHF_ALLOC, 16),
          sectionOf(".init_array.00100", SHT_INIT_ARRAY, SHF_ALLOC | SHF_WRITE, 16),
          sectionOf(".fini_array.00100", SHT_FINI_ARRAY, SHF_ALLOC | SHF_WRITE, 16),
          sectionOf(".preinit_array", SHT_PREINIT_ARRAY, SHF_ALLOC | SHF_WRITE, 16),
          sectionOf(".zeroes", SHT_NOBITS, SHF_ALLOC, 16),
          sectionOf(".ordered", SHT_PROGBITS, SHF_ALLOC | SHF_LINK_ORDER, 16)}) {
        EXPECT_EQ(refusalOf(section), "a section is not known: " + std::string{section.name});
    }
}

TEST(NativeLinkerTest, OtherAlignmentsAreRefused) {
    for (const std::uint64_t alignment :
         {std::uint64_t{3}, std::uint64_t{24}, 2 * pageSize, std::uint64_t{1} << 63}) {
        Section section = variables();
        section.alignment = alignment;
        EXPECT_EQ(refusalOf(section), "the size of a section is not known: .data") << alignment;
    }
    for (const std::uint64_t alignment : {std::uint64_t{0}, std::uint64_t{1}, pageSize}) {
        Section section = variables();
        section.alignment = alignment;
        EXPECT_EQ(refusalOf(section), "") << alignment;
    }
}

TEST(NativeLinkerTest, SectionsThatAreTooLargeAreRefused) {
    Section section = sectionOf(".bss", SHT_NOBITS, SHF_ALLOC | SHF_WRITE, 16);
    for (const std::uint64_t size :
         {std::uint64_t{1} << 33, std::uint64_t{1} << 63, ~std::uint64_t{0}}) {
        section.size = size;
        EXPECT_EQ(refusalOf(section), "the size of a section is not known: .bss") << size;
    }
}

TEST(NativeLinkerTest, RelocationsOutsideOfTheirSectionAreRefused) {
    for (const std::uint64_t offset : {std::uint64_t{13}, std::uint64_t{16}, std::uint64_t{17},
                                       ~std::uint64_t{0}, ~std::uint64_t{3}}) {
        EXPECT_EQ(refusalOf(code(), {{offset, R_X86_64_PC32, 0, 0}}), "a relocation is not known")
            << offset;
    }
    EXPECT_EQ(refusalOf(code(), {{12, R_X86_64_PC32, 0, 0}}), "");
    EXPECT_EQ(refusalOf(variables(), {{9, R_X86_64_64, 0, 0}}), "a relocation is not known");
    EXPECT_EQ(refusalOf(variables(), {{8, R_X86_64_64, 0, 0}}), "");
    EXPECT_EQ(refusalOf(sectionOf(".bss", SHT_NOBITS, SHF_ALLOC | SHF_WRITE, 16),
                        {{0, R_X86_64_PC32, 0, 0}}),
              "a relocation is not known");
}

TEST(NativeLinkerTest, OtherRelocationsAreNamed) {
    for (std::uint32_t type = 0; type < 64; ++type) {
        if (type != R_X86_64_PC32 && type != R_X86_64_PLT32 && type != R_X86_64_64) {
            EXPECT_EQ(refusalOf(variables(), {{0, type, 0, 0}}),
                      "a relocation is not known: type " + std::to_string(type));
        }
    }
}

TEST(NativeLinkerTest, AddressesInWhatIsNeverWrittenAreRefused) {
    const std::vector<Relocation> relocations = {{0, R_X86_64_64, 0, 0}};
    EXPECT_EQ(refusalOf(code(), relocations), "a relocation is not known: type 1");
    EXPECT_EQ(refusalOf(sectionOf(".rodata", SHT_PROGBITS, SHF_ALLOC, 16), relocations),
              "a relocation is not known: type 1");
}

TEST(NativeLinkerTest, DistancesOfMoreThanTwoGigabytesAreRefused) {
    for (const std::int64_t addend :
         {std::int64_t{0x80000000}, -std::int64_t{0x80000001}, std::int64_t{1} << 40}) {
        EXPECT_EQ(refusalOf(code(), {{0, R_X86_64_PC32, 0, addend}}), "the program is too large");
    }
    for (const std::int64_t addend : {std::int64_t{0x7FFFFFFF}, -std::int64_t{0x80000000}}) {
        EXPECT_EQ(refusalOf(code(), {{0, R_X86_64_PC32, 0, addend}}), "");
    }
}

// What comes out.

TEST(NativeLinkerTest, Headers) {
    const Executable program = realProgram();
    EXPECT_EQ(std::memcmp(program.header.e_ident, ELFMAG "\2\1\1\0", 8), 0);
    EXPECT_EQ(program.header.e_type, ET_DYN);
    EXPECT_EQ(program.header.e_machine, EM_X86_64);
    EXPECT_EQ(program.header.e_entry, program.symbols.at("_start").st_value);
    EXPECT_EQ(program.header.e_shoff + program.header.e_shnum * sizeof(Elf64_Shdr),
              program.bytes.size());
}

TEST(NativeLinkerTest, NothingCanBeWrittenAndExecuted) {
    const Executable program = realProgram();
    std::map<std::uint32_t, int> counts;
    for (const Elf64_Phdr& segment : program.segments) {
        ++counts[segment.p_type];
        EXPECT_NE(segment.p_flags & (PF_W | PF_X), unsigned{PF_W | PF_X});
        if (segment.p_type == PT_GNU_STACK) {
            EXPECT_EQ(segment.p_flags, unsigned{PF_R | PF_W});
        }
    }
    EXPECT_EQ(counts[PT_GNU_STACK], 1);
    EXPECT_EQ(counts[PT_GNU_RELRO], 1);
    EXPECT_EQ(counts[PT_INTERP], 0);
    EXPECT_EQ(counts[PT_LOAD], 3);
}

TEST(NativeLinkerTest, SegmentsAreOnPagesOfTheirOwn) {
    const Executable program = realProgram();
    std::uint64_t end = 0;
    for (const Elf64_Phdr& segment : program.segments) {
        if (segment.p_type != PT_LOAD) {
            continue;
        }
        EXPECT_EQ(segment.p_vaddr % pageSize, segment.p_offset % pageSize);
        EXPECT_LE(segment.p_filesz, segment.p_memsz);
        EXPECT_LE(segment.p_offset + segment.p_filesz, program.bytes.size());
        EXPECT_GE(segment.p_vaddr / pageSize * pageSize, end);
        end = (segment.p_vaddr + segment.p_memsz + pageSize - 1) / pageSize * pageSize;
    }
}

TEST(NativeLinkerTest, EachSectionLiesInTheSegmentThatItsFlagsAskFor) {
    const Executable program = realProgram();
    int count = 0;
    for (const auto& entry : program.sections) {
        const std::string& name = entry.first;
        const Elf64_Shdr& section = entry.second;
        if ((section.sh_flags & SHF_ALLOC) == 0) {
            continue;
        }
        ++count;
        EXPECT_EQ(section.sh_addr % std::max<std::uint64_t>(section.sh_addralign, 1), 0U) << name;
        const unsigned flags = PF_R | ((section.sh_flags & SHF_WRITE) != 0 ? unsigned{PF_W} : 0U) |
                               ((section.sh_flags & SHF_EXECINSTR) != 0 ? unsigned{PF_X} : 0U);
        EXPECT_TRUE(std::any_of(program.segments.begin(), program.segments.end(),
                                [&](const Elf64_Phdr& segment) {
                                    return segment.p_type == PT_LOAD && segment.p_flags == flags &&
                                           section.sh_addr >= segment.p_vaddr &&
                                           section.sh_addr + section.sh_size <=
                                               segment.p_vaddr + segment.p_memsz;
                                }))
            << name;
    }
    EXPECT_EQ(count, 8);
}

TEST(NativeLinkerTest, WhatIsReadOnlyAfterTheStartCoversTheArrays) {
    const Executable program = realProgram();
    const auto relro =
        *std::find_if(program.segments.begin(), program.segments.end(),
                      [](const Elf64_Phdr& segment) { return segment.p_type == PT_GNU_RELRO; });
    EXPECT_EQ(relro.p_vaddr % pageSize, 0U);
    EXPECT_EQ((relro.p_vaddr + relro.p_memsz) % pageSize, 0U);
    for (const char* const name : {".init_array", ".fini_array", ".data.rel.ro"}) {
        const Elf64_Shdr& section = program.sections.at(name);
        EXPECT_GE(section.sh_addr, relro.p_vaddr) << name;
        EXPECT_LE(section.sh_addr + section.sh_size, relro.p_vaddr + relro.p_memsz) << name;
    }
    for (const char* const name : {".data", ".bss"}) {
        EXPECT_GE(program.sections.at(name).sh_addr, relro.p_vaddr + relro.p_memsz) << name;
    }
}

TEST(NativeLinkerTest, SymbolsHaveTheirSizesAndTypes) {
    const Executable program = realProgram(function("f", "\tcqto\n\tcqto\n"));
    const Elf64_Shdr& text = program.sections.at(".text");
    for (const auto& [name, size] : std::map<std::string, std::size_t>{{"main", 13}, {"f", 5}}) {
        const Elf64_Sym& symbol = program.symbols.at(name);
        EXPECT_EQ(symbol.st_info, ELF64_ST_INFO(STB_GLOBAL, STT_FUNC)) << name;
        EXPECT_EQ(symbol.st_size, size) << name;
        EXPECT_GE(symbol.st_value, text.sh_addr) << name;
        EXPECT_LE(symbol.st_value + size, text.sh_addr + text.sh_size) << name;
        EXPECT_EQ(program.bytes[symbol.st_value + size - 1], 0xC3) << name;  // ret
    }
    EXPECT_EQ(program.symbols.at("f").st_value, program.symbols.at("main").st_value + 13);
    EXPECT_TRUE(program.symbols.contains("krel_print"));
    EXPECT_EQ(program.symbols.count(".LC0"), 0U);
}

TEST(NativeLinkerTest, LocalSymbolsComeFirst) {
    const Executable program = realProgram();
    const std::uint32_t first = program.sections.at(".symtab").sh_info;
    ASSERT_GT(first, 0U);
    ASSERT_LT(first, program.symbolOrder.size());
    const Elf64_Shdr& table = program.sections.at(".symtab");
    for (std::size_t number = 0; number < program.symbolOrder.size(); ++number) {
        const auto symbol = program.rowAt<Elf64_Sym>(table.sh_offset + number * sizeof(Elf64_Sym));
        EXPECT_EQ(ELF64_ST_BIND(symbol.st_info) == STB_GLOBAL, number >= first) << number;
    }
}

TEST(NativeLinkerTest, CallsAndDataAreReached) {
    const Executable program = realProgram();
    const std::uint64_t main = program.symbols.at("main").st_value;
    const auto dataDistance = program.rowAt<std::int32_t>(main + 3);
    const auto callDistance = program.rowAt<std::int32_t>(main + 8);
    const std::uint64_t text = main + 7 + static_cast<std::uint64_t>(std::int64_t{dataDistance});
    EXPECT_EQ(std::memcmp(program.bytes.data() + text, "text", 5), 0);
    EXPECT_EQ(main + 12 + static_cast<std::uint64_t>(std::int64_t{callDistance}),
              program.symbols.at("krel_print").st_value);
}

TEST(NativeLinkerTest, AddressesInDataAreCorrectedAtTheStart) {
    const Executable program{Objects{}
                                 .assembly(function("_start"))
                                 .object(objectWith(variables(), {{8, R_X86_64_64, 0, 5}}))
                                 .linked()};
    const Elf64_Shdr& table = program.sections.at(".rela.dyn");
    ASSERT_EQ(table.sh_size, sizeof(Elf64_Rela));
    const auto row = program.rowAt<Elf64_Rela>(table.sh_offset);
    const std::uint64_t here = program.symbols.at("here").st_value;
    EXPECT_EQ(row.r_offset, here + 8);
    EXPECT_EQ(row.r_info, ELF64_R_INFO(0, R_X86_64_RELATIVE));
    EXPECT_EQ(row.r_addend, static_cast<std::int64_t>(here + 5));
    EXPECT_EQ(program.rowAt<std::uint64_t>(here + 8), here + 5);
}

TEST(NativeLinkerTest, SectionsKeepTheirAlignment) {
    Section aligned = variables(1);
    aligned.alignment = 64;
    ObjectFile first = objectWith(variables(1));
    ObjectFile second = objectWith(aligned);
    second.symbols.front().name = "there";
    const Executable program{
        Objects{}.assembly(function("_start")).object(first).object(second).linked()};
    EXPECT_EQ(program.symbols.at("there").st_value, program.symbols.at("here").st_value + 64);
    EXPECT_EQ(program.symbols.at("there").st_value % 64, 0U);
}

TEST(NativeLinkerTest, ZeroesTakeNoRoomInTheFile) {
    const std::size_t size = std::size_t{1} << 30;
    const Executable program{
        Objects{}
            .assembly(function("_start"))
            .object(objectWith(sectionOf(".bss", SHT_NOBITS, SHF_ALLOC | SHF_WRITE, size)))
            .linked()};
    EXPECT_LT(program.bytes.size(), 5 * pageSize);
    EXPECT_EQ(program.sections.at(".bss").sh_size, size);
}

TEST(NativeLinkerTest, EqualObjectsGiveEqualBytes) {
    EXPECT_EQ(realProgram().bytes, realProgram().bytes);
}

}  // namespace

}  // namespace krel::Native
