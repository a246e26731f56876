// The linker. Comes in: objects. Goes out: an executable.
//
// Sections of the objects are collected in output sections; each of these knows its size, then its
// address, and is then copied to its place. Addresses count from the beginning of the file.

#include "native/linker.hpp"

#include <elf.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string>

#include "native/notKnown.hpp"
#include "shared/ast/textIndex.hpp"

namespace krel::Native {

namespace {

constexpr std::uint64_t pageSize = 0x1000;

std::uint64_t roundUp(std::uint64_t value, std::uint64_t step) {
    return (value + step - 1) / step * step;
}

/// The sections of the executable that are loaded, in the order of their addresses.
enum OutputNumber : std::uint8_t {
    relocations,
    constants,
    code,
    initialisations,
    terminations,
    relocatedConstants,
    variables,
    zeroes,
    outputCount
};

struct OutputSection {
    std::string_view name;
    std::uint32_t type;
    std::uint64_t flags;
    std::uint64_t entrySize;
    bool beginsPage;
    std::uint64_t alignment = 1;
    std::uint64_t size = 0;
    std::uint64_t address = 0;

    std::uint64_t end() const { return address + size; }
};

constexpr std::array<OutputSection, outputCount> emptyOutputs = {{
    {".rela.dyn", SHT_RELA, SHF_ALLOC, sizeof(Elf64_Rela), false, alignof(Elf64_Rela)},
    {".rodata", SHT_PROGBITS, SHF_ALLOC, 0, false},
    {".text", SHT_PROGBITS, SHF_ALLOC | SHF_EXECINSTR, 0, true},
    {".init_array", SHT_INIT_ARRAY, SHF_ALLOC | SHF_WRITE, 8, true},
    {".fini_array", SHT_FINI_ARRAY, SHF_ALLOC | SHF_WRITE, 8, false},
    {".data.rel.ro", SHT_PROGBITS, SHF_ALLOC | SHF_WRITE, 0, false},
    {".data", SHT_PROGBITS, SHF_ALLOC | SHF_WRITE, 0, true},
    {".bss", SHT_NOBITS, SHF_ALLOC | SHF_WRITE, 0, false},
}};

/// Which sections of objects an output section takes. The first row that fits is taken.
struct SectionRule {
    std::uint32_t type;
    std::uint64_t access;  // SHF_WRITE, SHF_EXECINSTR, or neither
    std::string_view name;
    bool isWholeName;  // or only its beginning
    OutputNumber output;
};

/// An array of functions with a number behind its name would have to come before others.
constexpr std::array<SectionRule, 7> sectionRules = {{
    {SHT_PROGBITS, SHF_EXECINSTR, "", false, code},
    {SHT_PROGBITS, 0, "", false, constants},
    {SHT_PROGBITS, SHF_WRITE, ".data.rel.ro", false, relocatedConstants},
    {SHT_PROGBITS, SHF_WRITE, "", false, variables},
    {SHT_NOBITS, SHF_WRITE, "", false, zeroes},
    {SHT_INIT_ARRAY, SHF_WRITE, ".init_array", true, initialisations},
    {SHT_FINI_ARRAY, SHF_WRITE, ".fini_array", true, terminations},
}};

OutputNumber outputFor(const Section& section) {
    constexpr std::uint64_t access = SHF_WRITE | SHF_EXECINSTR;
    constexpr std::uint64_t known = access | SHF_ALLOC | SHF_MERGE | SHF_STRINGS | SHF_GROUP;
    for (const SectionRule& rule : sectionRules) {
        if (section.type == rule.type && (section.flags & access) == rule.access &&
            (section.flags & ~known) == 0 && section.name.starts_with(rule.name) &&
            (!rule.isWholeName || section.name == rule.name)) {
            return rule.output;
        }
    }
    throw NotKnown("a section is not known: " + std::string{section.name});
}

/// Names that the start-up files of the C library and other linkers have for themselves. Whether a
/// program may define them is for those to say.
constexpr std::array<std::string_view, 16> foreignNames = {"_init",
                                                           "_fini",
                                                           "_edata",
                                                           "_end",
                                                           "__bss_start",
                                                           "__data_start",
                                                           "__dso_handle",
                                                           "_IO_stdin_used",
                                                           "_DYNAMIC",
                                                           "__TMC_END__",
                                                           "__gmon_start__",
                                                           "_GLOBAL_OFFSET_TABLE_",
                                                           "__GNU_EH_FRAME_HDR",
                                                           "__libc_start_main",
                                                           "__tunable_get_val",
                                                           "_dl_audit_preinit"};

/// The segments of the executable, in the order of their headers.
enum SegmentNumber : std::uint8_t {
    readOnlySegment,
    codeSegment,
    dataSegment,
    relroSegment,
    stackSegment,
    segmentCount
};

class Linker {
public:
    explicit Linker(const std::vector<ObjectFile>& itsObjects) : objects(itsObjects) {}

    Bytes run() {
        // Every section gets its place in an output section. From here on the sizes of the output
        // sections are fixed.
        collectSections();
        reserveRelocations();
        // Then each output section gets its address. From here on the file's layout is fixed, up to
        // the tables behind it that are not loaded.
        placeOutputs();
        // With the addresses, what the names stand for is known; from here on no new names are
        // defined.
        defineOwnNames();
        defineNames();
        resolveSymbols();
        // The bytes: sections, corrected for their addresses, and all that describes them.
        copySections();
        for (std::size_t number = 0; number < objects.size(); ++number) {
            relocateObject(number);
        }
        copyRelocations();
        appendSymbols();
        appendSectionHeaders();
        writeHeaders();
        return std::move(file);
    }

private:
    struct Definition {
        std::string_view name;
        std::uint64_t address;
    };

    // Sizes and places.

    void collectSections() {
        addresses.resize(objects.size());
        for (std::size_t number = 0; number < objects.size(); ++number) {
            for (const Section& section : objects[number].sections) {
                addresses[number].sections.push_back(addTo(outputs[outputFor(section)], section));
            }
        }
    }

    /// Returns the offset in the output section, which is the address as long as it has none.
    static std::uint64_t addTo(OutputSection& output, const Section& section) {
        const std::uint64_t alignment = std::max<std::uint64_t>(section.alignment, 1);
        constexpr std::uint64_t greatestSize = std::uint64_t{1} << 32;
        if ((alignment & (alignment - 1)) != 0 || alignment > pageSize ||
            section.size > greatestSize || output.size > greatestSize) {
            throw NotKnown("the size of a section is not known: " + std::string{section.name});
        }
        const std::uint64_t offset = roundUp(output.size, alignment);
        output.size = offset + section.size;
        output.alignment = std::max(output.alignment, alignment);
        return offset;
    }

    /// Each address in the data has to be corrected when the program starts.
    void reserveRelocations() {
        for (const ObjectFile& object : objects) {
            for (const Section& section : object.sections) {
                outputs[relocations].size +=
                    sizeof(Elf64_Rela) *
                    static_cast<std::size_t>(std::count_if(
                        section.relocations.begin(), section.relocations.end(),
                        [](const Relocation& entry) { return entry.type == R_X86_64_64; }));
            }
        }
    }

    void placeOutputs() {
        std::uint64_t next = sizeof(Elf64_Ehdr) + segmentCount * sizeof(Elf64_Phdr);
        for (OutputSection& output : outputs) {
            output.address = roundUp(next, output.beginsPage ? pageSize : output.alignment);
            next = output.end();
        }
        for (std::size_t number = 0; number < objects.size(); ++number) {
            for (std::size_t index = 0; index < objects[number].sections.size(); ++index) {
                addresses[number].sections[index] +=
                    outputs[outputFor(objects[number].sections[index])].address;
            }
        }
    }

    // Names.

    void define(std::string_view name, std::uint64_t address) {
        const KeyedText key{name};
        if (find(key) != 0) {
            throw NotKnown("a symbol is defined twice: " + std::string{name});
        }
        definitionIndex.add(key);
        definitions.push_back({name, address});
    }

    std::uint32_t find(const KeyedText& key) const {
        return definitionIndex.find(
            key, [&](std::uint32_t number) { return definitions[number - 1].name == key.text(); });
    }

    void defineOwnNames() {
        const auto defineAround = [&](OutputNumber number, std::string_view start,
                                      std::string_view end) {
            define(start, outputs[number].address);
            define(end, outputs[number].end());
        };
        define("__ehdr_start", 0);
        defineAround(relocations, "__rela_start", "__rela_end");
        defineAround(initialisations, "__init_array_start", "__init_array_end");
        defineAround(terminations, "__fini_array_start", "__fini_array_end");
        define("__relro_start", outputs[initialisations].address);
        define("__relro_end", outputs[variables].address);
    }

    void defineNames() {
        for (std::size_t number = 0; number < objects.size(); ++number) {
            for (const Symbol& symbol : objects[number].symbols) {
                if (symbol.isGlobal && symbol.isDefined()) {
                    if (std::find(foreignNames.begin(), foreignNames.end(), symbol.name) !=
                        foreignNames.end()) {
                        throw NotKnown("the name has a meaning for C: " + std::string{symbol.name});
                    }
                    define(symbol.name, addressIn(number, symbol));
                }
            }
        }
    }

    std::uint64_t addressIn(std::size_t object, const Symbol& symbol) const {
        return addresses[object].sections[symbol.section] + symbol.value;
    }

    void resolveSymbols() {
        for (std::size_t number = 0; number < objects.size(); ++number) {
            for (const Symbol& symbol : objects[number].symbols) {
                addresses[number].symbols.push_back(symbol.isDefined() ? addressIn(number, symbol)
                                                    : symbol.isGlobal  ? addressOf(symbol.name)
                                                                       : nowhere);
            }
        }
    }

    std::uint64_t addressOf(std::string_view name) const {
        const std::uint32_t number = find(KeyedText{name});
        return number == 0 ? nowhere : definitions[number - 1].address;
    }

    // Bytes.

    /// Returns where `size` bytes of the file begin, which it now has at least.
    std::uint8_t* bytesAt(std::uint64_t offset, std::uint64_t size) {
        if (file.size() < offset + size) {
            file.resize(offset + size);
        }
        return file.data() + offset;
    }

    template <typename Row>
    void write(std::uint64_t offset, const Row& row) {
        std::memcpy(bytesAt(offset, sizeof row), &row, sizeof row);
    }

    /// Where the part of the file ends that is loaded.
    std::uint64_t loadedEnd() const {
        const OutputNumber last = outputs[variables].size != 0 ? variables : relocatedConstants;
        return outputs[last].end();
    }

    /// About the size of the tables that are not loaded.
    std::uint64_t expectedTables() const {
        std::uint64_t size = pageSize;
        for (const ObjectFile& object : objects) {
            for (const Symbol& symbol : object.symbols) {
                size += sizeof(Elf64_Sym) + symbol.name.size() + 1;
            }
        }
        return size;
    }

    void copySections() {
        file.reserve(loadedEnd() + expectedTables());
        bytesAt(0, loadedEnd());
        for (std::size_t number = 0; number < objects.size(); ++number) {
            for (std::size_t index = 0; index < objects[number].sections.size(); ++index) {
                const Bytes& bytes = objects[number].sections[index].bytes;
                if (!bytes.empty()) {
                    std::memcpy(bytesAt(addresses[number].sections[index], bytes.size()),
                                bytes.data(), bytes.size());
                }
            }
        }
    }

    void relocateObject(std::size_t number) {
        const ObjectFile& object = objects[number];
        for (std::size_t index = 0; index < object.sections.size(); ++index) {
            for (const Relocation& entry : object.sections[index].relocations) {
                const std::uint64_t target = addresses[number].symbols[entry.symbol];
                requireDefined(target, object.symbols[entry.symbol].name);
                relocate(object.sections[index], addresses[number].sections[index], entry, target);
            }
        }
    }

    static void requireDefined(std::uint64_t address, std::string_view name) {
        if (address == nowhere) {
            throw NotKnown("a symbol is not defined: " + std::string{name});
        }
    }

    void relocate(const Section& section, std::uint64_t address, const Relocation& entry,
                  std::uint64_t target) {
        const std::uint64_t size = entry.type == R_X86_64_64 ? 8 : 4;
        if (entry.offset > section.bytes.size() || size > section.bytes.size() - entry.offset) {
            throw NotKnown("a relocation is not known");
        }
        const std::uint64_t place = address + entry.offset;
        // Unsigned, since a damaged object may have any addend.
        const std::uint64_t value = target + static_cast<std::uint64_t>(entry.addend);
        switch (entry.type) {
            case R_X86_64_PC32:
            case R_X86_64_PLT32:  // nothing is behind a table: all of it is in this file
                writeDistance(place, static_cast<std::int64_t>(value - place));
                return;
            case R_X86_64_64:
                if ((section.flags & SHF_WRITE) == 0) {
                    break;
                }
                write(place, value);
                corrections.push_back(
                    {place, ELF64_R_INFO(0, R_X86_64_RELATIVE), static_cast<std::int64_t>(value)});
                return;
            default:
                break;
        }
        throw NotKnown("a relocation is not known: type " + std::to_string(entry.type));
    }

    void writeDistance(std::uint64_t place, std::int64_t distance) {
        if (distance != static_cast<std::int32_t>(distance)) {
            throw NotKnown("the program is too large");
        }
        write(place, static_cast<std::int32_t>(distance));
    }

    void copyRelocations() {
        std::uint64_t offset = outputs[relocations].address;
        for (const Elf64_Rela& correction : corrections) {
            write(offset, correction);
            offset += sizeof correction;
        }
    }

    // Tables that are not loaded.

    /// Appends bytes to the file, at a place for structures. Returns it.
    std::uint64_t append(const void* bytes, std::size_t size) {
        const std::uint64_t offset = roundUp(file.size(), 8);
        if (size != 0) {
            std::memcpy(bytesAt(offset, size), bytes, size);
        }
        return offset;
    }

    /// Local symbols come first; what only the compiler's own labels say is left out.
    void appendSymbols() {
        std::vector<Elf64_Sym> symbols(1);
        std::string names(1, '\0');
        addSymbols(symbols, names, false);
        const auto localCount = static_cast<std::uint32_t>(symbols.size());
        addSymbols(symbols, names, true);
        const std::size_t size = symbols.size() * sizeof(Elf64_Sym);
        addTable(".symtab", SHT_SYMTAB, append(symbols.data(), size), size);
        sectionHeaders.back().sh_link = static_cast<std::uint32_t>(sectionHeaders.size());
        sectionHeaders.back().sh_info = localCount;
        sectionHeaders.back().sh_entsize = sizeof(Elf64_Sym);
        addTable(".strtab", SHT_STRTAB, append(names.data(), names.size()), names.size());
    }

    void addSymbols(std::vector<Elf64_Sym>& symbols, std::string& names, bool areGlobal) const {
        for (std::size_t number = 0; number < objects.size(); ++number) {
            for (const Symbol& symbol : objects[number].symbols) {
                if (symbol.isGlobal != areGlobal || !symbol.isDefined() || symbol.name.empty() ||
                    symbol.name.starts_with(".L")) {
                    continue;
                }
                const Section& section = objects[number].sections[symbol.section];
                symbols.push_back({static_cast<std::uint32_t>(names.size()),
                                   static_cast<unsigned char>(ELF64_ST_INFO(
                                       areGlobal ? STB_GLOBAL : STB_LOCAL, symbol.type)),
                                   STV_DEFAULT, static_cast<std::uint16_t>(outputFor(section) + 1),
                                   addressIn(number, symbol), symbol.size});
                names.append(symbol.name).push_back('\0');
                if (names.size() > std::numeric_limits<std::uint32_t>::max()) {
                    throw NotKnown("the names are too long");
                }
            }
        }
    }

    void addTable(std::string_view name, std::uint32_t type, std::uint64_t offset,
                  std::uint64_t size) {
        Elf64_Shdr header{};
        header.sh_name = nameOf(name);
        header.sh_type = type;
        header.sh_offset = offset;
        header.sh_size = size;
        header.sh_addralign = 1;
        sectionHeaders.push_back(header);
    }

    /// Adds the name of a section, and returns its place.
    std::uint32_t nameOf(std::string_view name) {
        const auto offset = static_cast<std::uint32_t>(sectionNames.size());
        sectionNames.append(name).push_back('\0');
        return offset;
    }

    void appendSectionHeaders() {
        const std::uint32_t ownName = nameOf(".shstrtab");
        std::vector<Elf64_Shdr> headers(1);
        for (const OutputSection& output : outputs) {
            headers.push_back({nameOf(output.name), output.type, output.flags, output.address,
                               std::min(output.address, loadedEnd()), output.size, 0, 0,
                               output.alignment, output.entrySize});
        }
        for (Elf64_Shdr header : sectionHeaders) {
            header.sh_link += header.sh_link != 0 ? outputCount + 1 : 0;
            headers.push_back(header);
        }
        const std::uint64_t names = append(sectionNames.data(), sectionNames.size());
        headers.push_back({ownName, SHT_STRTAB, 0, 0, names, sectionNames.size(), 0, 0, 1, 0});
        sectionHeaderCount = static_cast<std::uint16_t>(headers.size());
        sectionHeaderOffset = append(headers.data(), headers.size() * sizeof(Elf64_Shdr));
    }

    // Headers.

    void writeHeaders() {
        Elf64_Ehdr header{};
        std::memcpy(header.e_ident, ELFMAG, SELFMAG);
        header.e_ident[EI_CLASS] = ELFCLASS64;
        header.e_ident[EI_DATA] = ELFDATA2LSB;
        header.e_ident[EI_VERSION] = EV_CURRENT;
        header.e_type = ET_DYN;
        header.e_machine = EM_X86_64;
        header.e_version = EV_CURRENT;
        header.e_entry = addressOf("_start");
        requireDefined(header.e_entry, "_start");
        header.e_phoff = sizeof(Elf64_Ehdr);
        header.e_shoff = sectionHeaderOffset;
        header.e_ehsize = sizeof(Elf64_Ehdr);
        header.e_phentsize = sizeof(Elf64_Phdr);
        header.e_phnum = segmentCount;
        header.e_shentsize = sizeof(Elf64_Shdr);
        header.e_shnum = sectionHeaderCount;
        header.e_shstrndx = static_cast<std::uint16_t>(sectionHeaderCount - 1);
        write(0, header);
        const std::array<Elf64_Phdr, segmentCount> segments = {
            load(PF_R, 0, outputs[constants].end(), outputs[constants].end()),
            load(PF_R | PF_X, outputs[code].address, outputs[code].end(), outputs[code].end()),
            load(PF_R | PF_W, outputs[initialisations].address, loadedEnd(), outputs[zeroes].end()),
            relro(),
            Elf64_Phdr{.p_type = PT_GNU_STACK,
                       .p_flags = PF_R | PF_W,
                       .p_offset = 0,
                       .p_vaddr = 0,
                       .p_paddr = 0,
                       .p_filesz = 0,
                       .p_memsz = 0,
                       .p_align = 16}};
        write(sizeof header, segments);
    }

    static Elf64_Phdr load(std::uint32_t flags, std::uint64_t from, std::uint64_t fileEnd,
                           std::uint64_t memoryEnd) {
        return {.p_type = PT_LOAD,
                .p_flags = flags,
                .p_offset = from,
                .p_vaddr = from,
                .p_paddr = from,
                .p_filesz = fileEnd - from,
                .p_memsz = memoryEnd - from,
                .p_align = pageSize};
    }

    Elf64_Phdr relro() const {
        Elf64_Phdr segment = load(PF_R, outputs[initialisations].address,
                                  outputs[relocatedConstants].end(), outputs[variables].address);
        segment.p_type = PT_GNU_RELRO;
        segment.p_align = 1;
        return segment;
    }

    /// The address of a symbol that has none. Objects may name symbols that they make no use of.
    static constexpr std::uint64_t nowhere = std::numeric_limits<std::uint64_t>::max();

    struct Addresses {
        std::vector<std::uint64_t> sections;
        std::vector<std::uint64_t> symbols;
    };

    const std::vector<ObjectFile>& objects;
    std::array<OutputSection, outputCount> outputs = emptyOutputs;
    std::vector<Addresses> addresses;  // by object
    TextIndex definitionIndex;         // numbers of definitions, from 1
    std::vector<Definition> definitions;
    std::vector<Elf64_Rela> corrections;
    Bytes file;
    std::vector<Elf64_Shdr> sectionHeaders;  // of the tables that are not loaded
    std::string sectionNames = std::string(1, '\0');
    std::uint64_t sectionHeaderOffset = 0;
    std::uint16_t sectionHeaderCount = 0;
};

}  // namespace

Bytes link(const std::vector<ObjectFile>& objects) {
    return Linker{objects}.run();
}

}  // namespace krel::Native
