// The assembler. Comes in: the text of the code generator. Goes out: sections, symbols,
// relocations. The text is read once; each line is one of a label, a directive, an instruction.

#include "native/assembler.hpp"

#include <elf.h>

#include <optional>
#include <string>
#include <utility>

#include "native/branchingCode.hpp"
#include "native/decimal.hpp"
#include "native/encoder.hpp"
#include "native/instructionSet.hpp"
#include "native/lineReader.hpp"
#include "native/notKnown.hpp"
#include "shared/ast/textIndex.hpp"
#include "shared/ast/textRuns.hpp"

namespace krel::Native {

namespace {

/// The last one stands for the note about the stack, which is empty and no part of the object.
enum SectionNumber : std::uint32_t { textSection, dataSection, emptySection };

/// Whatever a name stands for: a label, a function, or something that is only called.
struct NamedPlace {
    std::string_view name;
    std::uint32_t section = Symbol::undefined;
    bool isGlobal = false;
    bool isFunction = false;

    /// Such names are forgotten when the object is made.
    bool isLocalLabel() const { return name.starts_with(".L"); }
};

/// Where a function ends.
struct FunctionEnd {
    std::uint32_t place;
    Position end;
};

/// A displacement of four bytes that the linker has to fill in: in front of `end`.
struct Reference {
    Position end;
    std::uint32_t place;
    std::uint32_t type;
};

class Assembler {
public:
    /// Guesses from the size of the text how much there will be of everything.
    explicit Assembler(std::string_view itsText)
        : text(itsText), line(text), code(text.size() / 2, text.size() / 256) {
        places.reserve(text.size() / 128);
        positions.reserve(text.size() / 128);
        references.reserve(text.size() / 128);
    }

    ObjectFile run() {
        readLines();
        requireTargets();
        code.chooseSizes(positions);
        ObjectFile object;
        object.sections = {{".text", SHT_PROGBITS, SHF_ALLOC | SHF_EXECINSTR, 1, 0, {}, {}},
                           {".rodata", SHT_PROGBITS, SHF_ALLOC, 1, 0, {}, {}}};
        object.sections[textSection].bytes = code.putTogether(positions);
        object.sections[dataSection].bytes = std::move(data);
        for (Section& filled : object.sections) {
            filled.size = filled.bytes.size();
        }
        listSymbols(object);
        listRelocations(object);
        return object;
    }

private:
    // Reading.

    void readLines() {
        require(text.ends_with('\n'));
        for (; !line.isAtEndOfText(); line.skip(1)) {
            ++lineNumber;
            readLine();
            require(line.isAtEndOfLine());
        }
    }

    void readLine() {
        if (line.isAtEndOfLine()) {
            return;
        }
        if (!line.take("\t")) {
            defineLabel();
            return;
        }
        const bool isDirective = line.isAt('.');
        const PackedWord word = line.takeWordBefore(' ');
        if (isDirective) {
            readDirective(word);
        } else if (const auto branch = branchForms.find(word); !branch.empty()) {
            readBranch(branch.front());
        } else {
            readInstruction(word);
        }
    }

    void require(bool condition) const {
        if (!condition) {
            throw NotKnown("line " + std::to_string(lineNumber) + " of the assembly is not known");
        }
    }

    bool isInText() const { return section == textSection; }
    bool isInData() const { return section == dataSection; }

    Position here() const {
        return isInText() ? code.here() : Position{BranchingCode::inFourBytes(data.size()), 0};
    }

    /// The number of what a name stands for.
    std::uint32_t placeOf(std::string_view name) {
        require(!name.empty() && !isDigit(name.front()));
        require(name.front() != '.' || name.starts_with(".L"));
        const KeyedText key{name};
        const std::uint32_t found =
            index.find(key, [&](std::uint32_t number) { return places[number - 1].name == name; });
        if (found != 0) {
            return found - 1;
        }
        places.emplace_back().name = name;
        positions.emplace_back();
        return index.add(key) - 1;
    }

    void defineLabel() {
        const std::uint32_t number = placeOf(line.takeName());
        require(line.take(":") && places[number].section == Symbol::undefined);
        require(section != emptySection);
        places[number].section = section;
        positions[number] = here();
    }

    // Directives.

    void readDirective(const PackedWord& word) {
        struct Directive {
            std::string_view word;
            void (Assembler::*read)();
        };
        static constexpr WordTable directives{std::array<Directive, 7>{{
            {".globl", &Assembler::readGlobal},
            {".type", &Assembler::readType},
            {".size", &Assembler::readSize},
            {".string", &Assembler::readString},
            {".double", &Assembler::readDouble},
            {".text", &Assembler::readText},
            {".section", &Assembler::readSection},
        }}};
        const std::span<const Directive> found = directives.find(word);
        require(!found.empty());
        (this->*found.front().read)();
    }

    void readText() { section = textSection; }

    void readSection() {
        if (line.take(" .rodata")) {
            section = dataSection;
        } else {
            // The stack is never executable.
            require(line.take(" .note.GNU-stack,\"\",@progbits"));
            section = emptySection;
        }
    }

    /// The name of a function.
    std::uint32_t takeFunction() {
        require(line.take(" "));
        const std::uint32_t number = placeOf(line.takeName());
        require(!places[number].isLocalLabel());
        return number;
    }

    void readGlobal() { places[takeFunction()].isGlobal = true; }

    void readType() {
        places[takeFunction()].isFunction = true;
        require(line.take(", @function"));
    }

    void readSize() {
        const std::uint32_t number = takeFunction();
        require(line.take(", .-") && line.takeName() == places[number].name);
        require(places[number].section == section && isInText());
        functionEnds.push_back({number, here()});
    }

    void readString() {
        require(isInData() && line.take(" \""));
        const auto isSpecial = [](char character) {
            return character == '"' || character == '\\' || character == '\0' || character == '\n';
        };
        for (;;) {
            const std::string_view plain = plainRun(line.rest(), 0, isSpecial);
            data.insert(data.end(), plain.begin(), plain.end());
            line.skip(plain.size());
            if (line.take("\"")) {
                break;
            }
            const bool isEscape = line.take("\\");
            require(isEscape && (line.isAt('"') || line.isAt('\\')));
            data.push_back(static_cast<std::uint8_t>(line.rest().front()));
            line.skip(1);
        }
        data.push_back(0);
    }

    void readDouble() {
        require(isInData() && line.take(" "));
        const std::optional<std::uint64_t> bits = nearestDouble(line.takeRestOfLine());
        require(bits.has_value());
        data.resize(data.size() + sizeof *bits);
        writeInteger(data.data() + data.size() - sizeof *bits, *bits, sizeof *bits);
    }

    // Instructions.

    void readInstruction(const PackedWord& mnemonic) {
        Operand first;
        Operand second;
        if (line.take(" ")) {
            readOperand(first);
            if (line.take(", ")) {
                readOperand(second);
            }
        }
        require(isInText());
        const InstructionForm* const form = findForm(mnemonic, first, second);
        require(form != nullptr);
        code.advance(encode(code.next(), *form, first, second));
        refer(first);
        refer(second);
    }

    /// The last four bytes of the code become the distance to what an operand names.
    void refer(const Operand& operand) {
        if (!operand.name.empty()) {
            references.push_back({here(), placeOf(operand.name),
                                  operand.kinds == function ? std::uint32_t{R_X86_64_PLT32}
                                                            : std::uint32_t{R_X86_64_PC32}});
        }
    }

    void readBranch(const BranchForm& form) {
        require(isInText() && line.take(" "));
        const std::uint32_t target = placeOf(line.takeName());
        code.addBranch(form, target);
        targets.push_back(target);
    }

    void readOperand(Operand& operand) {
        if (line.isAt('%')) {
            readRegister(operand);
        } else if (line.take("$")) {
            readImmediate(operand);
        } else if (line.take("(%r10,%r11,8)")) {
            operand.kinds = m64;
            operand.memory = Operand::Memory::Element;
        } else if (line.isAt('-') || line.isAtDigit()) {
            readSlot(operand);
        } else {
            readNamed(operand);
        }
    }

    void readRegister(Operand& operand) {
        const auto found = registerNames.find(line.takeWordBefore(','));
        require(!found.empty());
        operand.kinds = found.front().kinds;
        operand.number = found.front().number;
    }

    /// An integer of up to 64 bits.
    std::int64_t takeInteger() {
        constexpr std::uint64_t greatestNegative = std::uint64_t{1} << 63;
        const bool isNegative = line.take("-");
        if (!isNegative) {
            line.take("+");
        }
        std::uint64_t value = 0;
        require(line.takeDigits(value) && (!isNegative || value <= greatestNegative));
        return static_cast<std::int64_t>(isNegative ? 0 - value : value);
    }

    void readImmediate(Operand& operand) {
        operand.value = takeInteger();
        const unsigned kinds = imm64 | (fitsFourBytes(operand.value) ? unsigned{imm32} : 0U) |
                               (fitsByte(operand.value) ? unsigned{imm8} : 0U);
        operand.kinds = static_cast<std::uint16_t>(kinds);
    }

    void readSlot(Operand& operand) {
        operand.kinds = m64;
        operand.memory = Operand::Memory::Slot;
        operand.value = takeInteger();
        require(fitsFourBytes(operand.value) && line.take("(%rbp)"));
    }

    void readNamed(Operand& operand) {
        operand.name = line.takeName();
        require(!operand.name.empty());
        if (line.take("(%rip)")) {
            operand.kinds = m64;
            operand.memory = Operand::Memory::Data;
        } else {
            require(line.take("@PLT"));
            operand.kinds = function;
        }
    }

    // The object.

    void requireTargets() const {
        for (const std::uint32_t target : targets) {
            const NamedPlace& place = places[target];
            if (place.section != textSection || !place.isLocalLabel()) {
                throw NotKnown("the target of a branch is not known: " + std::string{place.name});
            }
        }
    }

    /// First one symbol for each section, at its beginning: relocations against local labels are
    /// made relative to these. Then the names.
    void listSymbols(ObjectFile& object) {
        for (const std::uint32_t number : {textSection, dataSection}) {
            object.symbols.push_back({.name = {}, .type = STT_SECTION, .section = number});
        }
        symbolOfPlace.resize(places.size());
        for (std::size_t number = 0; number < places.size(); ++number) {
            const NamedPlace& place = places[number];
            if (place.isLocalLabel()) {
                continue;
            }
            symbolOfPlace[number] = static_cast<std::uint32_t>(object.symbols.size());
            object.symbols.push_back(
                {.name = place.name,
                 .type = place.isFunction ? std::uint8_t{STT_FUNC} : std::uint8_t{STT_NOTYPE},
                 .isGlobal = true,
                 .section = place.section,
                 .value = addressOf(number)});
            if (place.section != Symbol::undefined && !place.isGlobal) {
                throw NotKnown("a name is neither global nor local: " + std::string{place.name});
            }
        }
        for (const FunctionEnd& function : functionEnds) {
            Symbol& symbol = object.symbols[symbolOfPlace[function.place]];
            symbol.size = code.addressOf(function.end) - symbol.value;
        }
    }

    /// The offset in its section, or 0 when it is not defined here.
    std::size_t addressOf(std::size_t place) const {
        return places[place].section == textSection ? code.addressOf(positions[place])
                                                    : positions[place].bytes;
    }

    void listRelocations(ObjectFile& object) const {
        std::vector<Relocation>& relocations = object.sections[textSection].relocations;
        relocations.reserve(references.size());
        constexpr std::int64_t beforeEnd = -4;
        for (const Reference& reference : references) {
            const NamedPlace& place = places[reference.place];
            Relocation relocation = {code.addressOf(reference.end) - 4, reference.type,
                                     symbolOfPlace[reference.place], beforeEnd};
            if (place.isLocalLabel()) {
                if (place.section != dataSection || reference.type != R_X86_64_PC32) {
                    throw NotKnown("a label of the data is not known: " + std::string{place.name});
                }
                relocation.symbol = dataSection;
                relocation.addend += static_cast<std::int64_t>(positions[reference.place].bytes);
            }
            relocations.push_back(relocation);
        }
    }

    std::string_view text;
    std::size_t lineNumber = 0;
    LineReader line;
    std::uint32_t section = textSection;
    BranchingCode code;
    Bytes data;
    TextIndex index;  // numbers of places, from 1
    std::vector<NamedPlace> places;
    std::vector<Position> positions;  // of the places
    std::vector<std::uint32_t> targets;
    std::vector<Reference> references;
    std::vector<FunctionEnd> functionEnds;
    std::vector<std::uint32_t> symbolOfPlace;
};

}  // namespace

ObjectFile assemble(std::string_view text) {
    return Assembler{text}.run();
}

}  // namespace krel::Native
