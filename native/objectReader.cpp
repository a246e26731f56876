// Reading of relocatable objects. Comes in: the bytes of a file. Goes out: its sections and
// symbols.

#include "native/objectReader.hpp"

#include <elf.h>

#include <cstring>
#include <string>
#include <utility>

#include "native/notKnown.hpp"

namespace krel::Native {

namespace {

[[noreturn]] void refuse(const char* what) {
    throw NotKnown(std::string{"the object file has "} + what);
}

void require(bool condition, const char* otherwise) {
    if (!condition) {
        refuse(otherwise);
    }
}

class ObjectReader {
public:
    explicit ObjectReader(std::string_view itsFile) : file(itsFile) {}

    ObjectFile run() {
        readHeaders();
        for (std::size_t number = 0; number < headers.size(); ++number) {
            takeSection(number);
        }
        require(symbolHeader != nullptr, "no symbols");
        takeSymbols();
        for (const Elf64_Shdr& header : headers) {
            if (header.sh_type == SHT_RELA) {
                takeRelocations(header);
            }
        }
        return std::move(object);
    }

private:
    /// The bytes of the file from an offset on.
    std::string_view bytesAt(std::uint64_t offset, std::uint64_t size) const {
        require(offset <= file.size() && size <= file.size() - offset,
                "a part outside of the file");
        return file.substr(offset, size);
    }

    /// A table of structures, which may lie at any address.
    template <typename Row>
    std::vector<Row> tableAt(std::uint64_t offset, std::uint64_t size) const {
        const std::string_view bytes = bytesAt(offset, size);
        require(bytes.size() % sizeof(Row) == 0, "a table of another size");
        std::vector<Row> rows(bytes.size() / sizeof(Row));
        if (!rows.empty()) {
            std::memcpy(rows.data(), bytes.data(), bytes.size());
        }
        return rows;
    }

    template <typename Row>
    std::vector<Row> tableOf(const Elf64_Shdr& header) const {
        return tableAt<Row>(header.sh_offset, header.sh_size);
    }

    /// A text of a string table, which must end in it.
    std::string_view textAt(std::uint64_t tableNumber, std::uint64_t offset) const {
        require(tableNumber < headers.size() && headers[tableNumber].sh_type == SHT_STRTAB,
                "no texts for its names");
        const std::string_view table =
            bytesAt(headers[tableNumber].sh_offset, headers[tableNumber].sh_size);
        require(offset < table.size(), "a name outside of its texts");
        const std::size_t end = table.find('\0', offset);
        require(end != std::string_view::npos, "a name without an end");
        return table.substr(offset, end - offset);
    }

    void readHeaders() {
        const auto header = tableAt<Elf64_Ehdr>(0, sizeof(Elf64_Ehdr)).front();
        constexpr std::string_view mark = {ELFMAG "\2\1\1", SELFMAG + 3};  // 64 bits, lowest first
        require(file.starts_with(mark) && header.e_type == ET_REL && header.e_machine == EM_X86_64,
                "another format");
        require(header.e_shentsize == sizeof(Elf64_Shdr), "other section headers");
        headers =
            tableAt<Elf64_Shdr>(header.e_shoff, std::uint64_t{header.e_shnum} * sizeof(Elf64_Shdr));
        names = header.e_shstrndx;
        newNumbers.resize(headers.size(), Symbol::undefined);
    }

    void takeSection(std::size_t number) {
        const Elf64_Shdr& header = headers[number];
        switch (header.sh_type) {
            case SHT_SYMTAB:
                require(symbolHeader == nullptr, "two tables of symbols");
                symbolHeader = &header;
                return;
            case SHT_NULL:
            case SHT_STRTAB:
            case SHT_RELA:   // belongs to another section
            case SHT_GROUP:  // says which sections several objects may have in common
                return;
            case SHT_REL:
                refuse("relocations without addends");
            default:
                break;
        }
        if ((header.sh_flags & SHF_ALLOC) == 0) {
            return;  // comments and the like
        }
        newNumbers[number] = static_cast<std::uint32_t>(object.sections.size());
        object.sections.push_back({textAt(names, header.sh_name),
                                   header.sh_type,
                                   header.sh_flags,
                                   header.sh_addralign,
                                   header.sh_size,
                                   contentOf(header),
                                   {}});
    }

    Bytes contentOf(const Elf64_Shdr& header) const {
        return header.sh_type == SHT_NOBITS ? Bytes{} : tableOf<std::uint8_t>(header);
    }

    void takeSymbols() {
        for (const Elf64_Sym& entry : tableOf<Elf64_Sym>(*symbolHeader)) {
            Symbol symbol;
            symbol.name = textAt(symbolHeader->sh_link, entry.st_name);
            symbol.type = ELF64_ST_TYPE(entry.st_info);
            symbol.isGlobal = ELF64_ST_BIND(entry.st_info) == STB_GLOBAL;
            symbol.value = entry.st_value;
            symbol.size = entry.st_size;
            require(symbol.isGlobal || ELF64_ST_BIND(entry.st_info) == STB_LOCAL,
                    "symbols that are neither local nor global");
            if (entry.st_shndx != SHN_UNDEF && symbol.type != STT_FILE) {
                require(entry.st_shndx < headers.size(), "a symbol of no section");
                symbol.section = newNumbers[entry.st_shndx];
            }
            require(!symbol.isDefined() || isInside(symbol), "a symbol outside of its section");
            object.symbols.push_back(symbol);
        }
    }

    bool isInside(const Symbol& symbol) const {
        const std::uint64_t size = object.sections[symbol.section].size;
        return symbol.value <= size && symbol.size <= size - symbol.value;
    }

    void takeRelocations(const Elf64_Shdr& header) {
        require(header.sh_info < headers.size(), "relocations of no section");
        const std::uint32_t number = newNumbers[header.sh_info];
        if (number == Symbol::undefined) {
            return;
        }
        for (const Elf64_Rela& entry : tableOf<Elf64_Rela>(header)) {
            const auto symbol = static_cast<std::uint32_t>(ELF64_R_SYM(entry.r_info));
            require(symbol < object.symbols.size(), "a relocation of no symbol");
            object.sections[number].relocations.push_back(
                {entry.r_offset, static_cast<std::uint32_t>(ELF64_R_TYPE(entry.r_info)), symbol,
                 entry.r_addend});
        }
    }

    std::string_view file;
    std::vector<Elf64_Shdr> headers;
    std::uint64_t names = 0;                   // the section of the sections' names
    const Elf64_Shdr* symbolHeader = nullptr;  // one of the headers
    std::vector<std::uint32_t> newNumbers;     // of the sections that take memory
    ObjectFile object;
};

}  // namespace

ObjectFile readObject(std::string_view file) {
    return ObjectReader{file}.run();
}

}  // namespace krel::Native
