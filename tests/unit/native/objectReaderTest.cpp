// The reader of objects, by the runtime's own object: cut at every length, and damaged at every
// byte of its headers and tables.

#include "native/objectReader.hpp"

#include <elf.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>

#include "native/assembler.hpp"
#include "native/files.hpp"
#include "native/linker.hpp"
#include "native/notKnown.hpp"

namespace krel::Native {

namespace {

const std::string& runtime() {
    static const std::string file{FileContent{KREL_RUNTIME_OBJECT}.text()};
    return file;
}

template <typename Row>
Row rowAt(const std::string& file, std::size_t offset) {
    Row row;
    std::memcpy(&row, file.data() + offset, sizeof row);
    return row;
}

template <typename Row>
void setRow(std::string& file, std::size_t offset, const Row& row) {
    std::memcpy(file.data() + offset, &row, sizeof row);
}

std::size_t offsetOfHeader(const std::string& file, std::size_t number) {
    return rowAt<Elf64_Ehdr>(file, 0).e_shoff + number * sizeof(Elf64_Shdr);
}

/// The number of the first section of a type.
std::size_t sectionOfType(const std::string& file, std::uint32_t type) {
    std::size_t number = 0;
    while (rowAt<Elf64_Shdr>(file, offsetOfHeader(file, number)).sh_type != type) {
        ++number;
    }
    return number;
}

bool isKnown(const std::string& file) {
    try {
        readObject(file);
        return true;
    } catch (const NotKnown&) {
        return false;
    }
}

/// The runtime's object after a change of the header of its first section of a type.
std::string withHeader(std::uint32_t type, const std::function<void(Elf64_Shdr&)>& change) {
    std::string file = runtime();
    const std::size_t offset = offsetOfHeader(file, sectionOfType(file, type));
    auto header = rowAt<Elf64_Shdr>(file, offset);
    change(header);
    setRow(file, offset, header);
    return file;
}

/// The same for a row of the table of symbols or of relocations.
template <typename Row>
std::string withRow(std::uint32_t type, std::size_t number,
                    const std::function<void(Row&)>& change) {
    std::string file = runtime();
    const std::size_t header = offsetOfHeader(file, sectionOfType(file, type));
    const std::size_t offset = rowAt<Elf64_Shdr>(file, header).sh_offset + number * sizeof(Row);
    auto row = rowAt<Row>(file, offset);
    change(row);
    setRow(file, offset, row);
    return file;
}

bool liesIn(std::string_view part, const std::string& file) {
    return part.empty() ||
           (part.data() >= file.data() && part.data() + part.size() <= file.data() + file.size());
}

/// All that others rely on.
void expectSane(const ObjectFile& object, const std::string& file) {
    for (const Section& section : object.sections) {
        ASSERT_TRUE(liesIn(section.name, file));
        ASSERT_EQ(section.bytes.size(), section.type == SHT_NOBITS ? 0 : section.size);
        for (const Relocation& relocation : section.relocations) {
            ASSERT_LT(relocation.symbol, object.symbols.size());
        }
    }
    for (const Symbol& symbol : object.symbols) {
        ASSERT_TRUE(liesIn(symbol.name, file));
        if (symbol.isDefined()) {
            ASSERT_LT(symbol.section, object.sections.size());
            ASSERT_LE(symbol.value + symbol.size, object.sections[symbol.section].size);
        }
    }
}

/// Reads a file and links it; only NotKnown may come of it.
void readAndLink(const std::string& file) {
    static const std::string start =
        "\t.text\n\t.globl _start\n_start:\n\t.globl main\nmain:\n\tret\n";
    try {
        std::vector<ObjectFile> objects;
        objects.push_back(readObject(file));
        expectSane(objects.front(), file);
        objects.push_back(assemble(start));
        const Bytes linked = link(objects);
        EXPECT_LT(linked.size(), 4 * file.size());
    } catch (const NotKnown&) {
    }
}

TEST(NativeObjectReaderTest, ReadsTheRuntime) {
    const ObjectFile object = readObject(runtime());
    expectSane(object, runtime());
    EXPECT_GT(object.sections.size(), 4U);
    int entryPoints = 0;
    for (const Symbol& symbol : object.symbols) {
        entryPoints += symbol.isGlobal && symbol.type == STT_FUNC && symbol.isDefined() ? 1 : 0;
    }
    EXPECT_EQ(entryPoints, 6);
}

TEST(NativeObjectReaderTest, RefusesAnyTruncation) {
    for (std::size_t size = 0; size < runtime().size(); ++size) {
        // In memory of exactly this size, so that a read behind it is seen.
        const std::string cut = runtime().substr(0, size);
        ASSERT_FALSE(isKnown(cut)) << size;
    }
}

TEST(NativeObjectReaderTest, BytesBehindTheEndDoNotMatter) {
    EXPECT_TRUE(isKnown(runtime() + "more"));
}

// Every byte of the headers, the symbols, the relocations and the names.
TEST(NativeObjectReaderTest, DamagedTablesAreRefusedOrSane) {
    std::string file = runtime();
    const auto damage = [&](std::size_t from, std::size_t size) {
        for (std::size_t at = from; at < from + size; ++at) {
            const char original = file[at];
            for (const int value : {0, 0xFF, original ^ 1, original ^ 0x80, 7}) {
                file[at] = static_cast<char>(value);
                readAndLink(file);
            }
            file[at] = original;
        }
    };
    damage(0, sizeof(Elf64_Ehdr));
    const auto header = rowAt<Elf64_Ehdr>(file, 0);
    damage(header.e_shoff, header.e_shnum * sizeof(Elf64_Shdr));
    for (std::size_t number = 0; number < header.e_shnum; ++number) {
        const auto section = rowAt<Elf64_Shdr>(runtime(), offsetOfHeader(runtime(), number));
        // Of long tables, the beginning has all there is.
        if (section.sh_type == SHT_SYMTAB || section.sh_type == SHT_RELA ||
            section.sh_type == SHT_STRTAB) {
            damage(section.sh_offset, std::min<std::size_t>(section.sh_size, 480));
        }
    }
    EXPECT_EQ(file, runtime());
}

TEST(NativeObjectReaderTest, RefusesOtherFormats) {
    const auto with = [](const std::function<void(Elf64_Ehdr&)>& change) {
        std::string file = runtime();
        auto header = rowAt<Elf64_Ehdr>(file, 0);
        change(header);
        setRow(file, 0, header);
        return file;
    };
    EXPECT_TRUE(isKnown(with([](Elf64_Ehdr&) {})));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_ident[0] = 'E'; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_ident[EI_CLASS] = ELFCLASS32; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_ident[EI_DATA] = ELFDATA2MSB; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_type = ET_DYN; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_machine = EM_AARCH64; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_shentsize = 40; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_shnum = 0; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_shoff = ~0ULL; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Ehdr& header) { header.e_shstrndx = 0xFFFF; })));
}

TEST(NativeObjectReaderTest, RefusesTablesThatLieElsewhere) {
    for (const unsigned type :
         {unsigned{SHT_SYMTAB}, unsigned{SHT_STRTAB}, unsigned{SHT_RELA}, unsigned{SHT_PROGBITS}}) {
        EXPECT_FALSE(
            isKnown(withHeader(type, [](Elf64_Shdr& header) { header.sh_offset = ~0ULL; })));
        EXPECT_FALSE(isKnown(withHeader(type, [](Elf64_Shdr& header) { header.sh_size = ~0ULL; })));
        EXPECT_FALSE(isKnown(withHeader(type, [](Elf64_Shdr& header) {
            header.sh_offset = runtime().size();
            header.sh_size = 24;
        })));
    }
    EXPECT_FALSE(isKnown(withHeader(SHT_SYMTAB, [](Elf64_Shdr& header) { --header.sh_size; })));
    EXPECT_FALSE(isKnown(withHeader(SHT_RELA, [](Elf64_Shdr& header) { --header.sh_size; })));
    EXPECT_FALSE(isKnown(withHeader(SHT_SYMTAB, [](Elf64_Shdr& header) { header.sh_link = 0; })));
    EXPECT_FALSE(
        isKnown(withHeader(SHT_SYMTAB, [](Elf64_Shdr& header) { header.sh_link = 9999; })));
    EXPECT_FALSE(isKnown(withHeader(SHT_RELA, [](Elf64_Shdr& header) { header.sh_info = 9999; })));
    EXPECT_FALSE(
        isKnown(withHeader(SHT_PROGBITS, [](Elf64_Shdr& header) { header.sh_name = 0xFFFFFF; })));
    EXPECT_FALSE(
        isKnown(withHeader(SHT_RELA, [](Elf64_Shdr& header) { header.sh_type = SHT_SYMTAB; })));
    EXPECT_FALSE(
        isKnown(withHeader(SHT_SYMTAB, [](Elf64_Shdr& header) { header.sh_type = SHT_NULL; })));
}

TEST(NativeObjectReaderTest, RefusesSymbolsThatAreNotKnown) {
    const auto with = [](const std::function<void(Elf64_Sym&)>& change) {
        return withRow<Elf64_Sym>(SHT_SYMTAB, 5, change);
    };
    EXPECT_TRUE(isKnown(with([](Elf64_Sym&) {})));
    EXPECT_FALSE(isKnown(with([](Elf64_Sym& row) { row.st_name = 0xFFFFFF; })));
    EXPECT_FALSE(
        isKnown(with([](Elf64_Sym& row) { row.st_info = ELF64_ST_INFO(STB_WEAK, STT_FUNC); })));
    EXPECT_FALSE(isKnown(with([](Elf64_Sym& row) { row.st_shndx = 9999; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Sym& row) { row.st_shndx = SHN_COMMON; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Sym& row) { row.st_shndx = SHN_ABS; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Sym& row) { row.st_value = ~0ULL; })));
    EXPECT_FALSE(isKnown(with([](Elf64_Sym& row) { row.st_size = ~0ULL; })));
}

TEST(NativeObjectReaderTest, RefusesRelocationsOfNoSymbol) {
    const auto with = [](std::uint64_t symbol) {
        return withRow<Elf64_Rela>(SHT_RELA, 0, [&](Elf64_Rela& row) {
            row.r_info = ELF64_R_INFO(symbol, ELF64_R_TYPE(row.r_info));
        });
    };
    EXPECT_TRUE(isKnown(with(1)));
    EXPECT_FALSE(isKnown(with(0xFFFFFFFF)));
    EXPECT_FALSE(isKnown(with(readObject(runtime()).symbols.size())));
}

}  // namespace

}  // namespace krel::Native
