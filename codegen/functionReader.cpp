// Reading lines. Nearly all of them are plain: words, numbers, strings, elements and operators with
// one blank between two. Those are cut at their blanks, and the kinds of their parts tell the form.
// All other lines - with escapes, character literals, strings that look like the end of an element
// or like an operation - are left to the recogniser of forms, which is exact for every line. The
// two have to agree on the plain ones.

#include "codegen/functionReader.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

#include "codegen/irText.hpp"
#include "shared/krelir-cfg/ir-function.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

namespace {

/// A form of plain lines: what each of its parts may be, and which of them are its groups.
struct PlainForm {
    IRForm form;
    std::array<std::uint32_t, 5> parts;
    std::array<std::uint8_t, 4> groups;
    std::uint8_t groupCount;
};

constexpr std::uint32_t value = TokenClass::value;
constexpr std::uint32_t assign = TokenClass::assign;
constexpr std::uint32_t anyOperand = TokenClass::value | TokenClass::boolean | TokenClass::integer |
                                     TokenClass::real | TokenClass::string | TokenClass::element;
constexpr std::uint32_t unary = TokenClass::anyUnary;
constexpr std::uint32_t binary = TokenClass::anyBinary;

/// Ordered by number of parts. No line fits two of them.
constexpr std::array<PlainForm, 16> plainForms = {{
    {IRForm::Return, {TokenClass::leave}, {}, 0},
    {IRForm::Argument, {TokenClass::arg, anyOperand}, {1}, 1},
    {IRForm::Jump, {TokenClass::jump, TokenClass::blockName}, {1}, 1},
    {IRForm::ReturnValue, {TokenClass::leave, anyOperand}, {1}, 1},
    {IRForm::Copy, {value, assign, anyOperand}, {0, 2}, 2},
    {IRForm::Call, {TokenClass::call, TokenClass::callee, TokenClass::integer}, {1, 2}, 2},
    {IRForm::ElementStore, {TokenClass::element, assign, anyOperand}, {0, 2}, 2},
    {IRForm::IntegerParameter, {TokenClass::param, TokenClass::integerType, value}, {1, 2}, 2},
    {IRForm::DoubleParameter, {TokenClass::param, TokenClass::doubleType, value}, {2}, 1},
    {IRForm::Branch,
     {TokenClass::branch, anyOperand, TokenClass::jump, TokenClass::blockName},
     {1, 3},
     2},
    {IRForm::Conversion, {value, assign, TokenClass::conversion, anyOperand}, {0, 2, 3}, 3},
    {IRForm::IntToDouble, {value, assign, TokenClass::intToDouble, anyOperand}, {0, 3}, 2},
    {IRForm::DoubleToString, {value, assign, TokenClass::doubleToString, anyOperand}, {0, 3}, 2},
    {IRForm::UnaryOperation, {value, assign, unary, anyOperand}, {0, 2, 3}, 3},
    {IRForm::BinaryOperation, {value, assign, anyOperand, binary, anyOperand}, {0, 2, 3, 4}, 4},
    {IRForm::CallWithResult,
     {value, assign, TokenClass::call, TokenClass::callee, TokenClass::integer},
     {0, 3, 4},
     3},
}};

/// Where the forms of each number of parts begin, which is how many have fewer; the next entry is
/// where they end.
constexpr auto formsByPartCount = [] {
    std::array<std::size_t, std::tuple_size_v<decltype(PlainForm::parts)> + 2> begins{};
    for (const PlainForm& form : plainForms) {
        const auto partCount = std::count_if(form.parts.begin(), form.parts.end(),
                                             [](std::uint32_t part) { return part != 0; });
        for (auto more = static_cast<std::size_t>(partCount) + 1; more < begins.size(); ++more) {
            ++begins[more];
        }
    }
    return begins;
}();

template <typename Predicate>
const char* skip(const char* at, const char* end, Predicate isSkipped) {
    while (at != end && isSkipped(*at)) {
        ++at;
    }
    return at;
}

/// Adds the word that begins at `at` to a table and moves to its end.
inline ValueTable::Entry takeWord(const char*& at, const char* end, ValueTable& table) {
    const char* const begin = at;
    std::uint64_t packed = 0;
    do {
        packed = KeyedText::packNext(packed, *at++);
    } while (at != end && isNameCharacter(*at));
    return table.add(KeyedText{{begin, at}, packed});
}

/// Cuts a line into its parts, and adds the words that it meets to a table.
class PlainLine {
public:
    PlainLine(std::string_view text, ValueTable& words)
        : table(words), at(text.data()), end(at + text.size()) {}

    /// False when the line is not plain; the words up to there have been added.
    bool cut() {
        while (at != end && count < classes.size()) {
            if (!takePart(operands[count], classes[count])) {
                return false;
            }
            ++count;
            if (at == end) {
                return true;
            }
            if (*at++ != ' ') {
                return false;
            }
        }
        return false;
    }

    /// The form of the parts; null when they have none that plain lines can have.
    const PlainForm* form() const {
        const std::size_t last = formsByPartCount[count + 1];
        for (std::size_t row = formsByPartCount[count]; row < last; ++row) {
            const PlainForm& form = plainForms[row];
            std::size_t part = 0;
            while (part < count && (classes[part] & form.parts[part]) != 0) {
                ++part;
            }
            if (part == count) {
                return &form;
            }
        }
        return nullptr;
    }

    const PackedOperand& operator[](std::size_t part) const { return operands[part]; }

private:
    bool takePart(PackedOperand& operand, std::uint32_t& partClass) {
        if (beginsName(*at)) {
            return takeName(operand, partClass);
        }
        const char* const begin = at;
        Operand::Kind kind = Operand::Kind::Word;
        if (isDigit(*at)) {
            kind = takeNumber();
            partClass = kind == Operand::Kind::Integer ? TokenClass::integer : TokenClass::real;
        } else if (*at == '"') {
            kind = Operand::Kind::String;
            partClass = takeString() ? TokenClass::string : 0;
        } else {
            at = skip(at, end, isOperatorCharacter);
            partClass = operatorClass({begin, at});
        }
        operand = {{begin, at}, kind};
        return partClass != 0;
    }

    /// A word, an element of the array that the word names, or a callee.
    bool takeName(PackedOperand& operand, std::uint32_t& partClass) {
        const char* const begin = at;
        const ValueTable::Entry entry = takeWord(at, end, table);
        const std::string_view word{begin, at};
        const char next = at != end ? *at : '\0';
        partClass = entry.wordClass;
        if (next == ',') {
            partClass = TokenClass::callee;
            operand = {word, Operand::Kind::Word};
            ++at;
        } else if (partClass == TokenClass::value && next == '[') {
            const bool isElement = takeIndex();
            partClass = TokenClass::element;
            operand = {{begin, at}, Operand::Kind::Element, entry.number};
            return isElement;
        } else if (partClass == TokenClass::value) {
            operand = {word, Operand::Kind::Named, entry.number};
        } else if (partClass == TokenClass::boolean) {
            operand = {word, Operand::Kind::Boolean};
        } else {
            const bool isBlockName = partClass == TokenClass::blockName;
            operand = {word.substr(isBlockName ? 1 : 0), Operand::Kind::Word};
        }
        return true;
    }

    /// One word or integer in brackets.
    bool takeIndex() {
        ++at;
        if (at != end && beginsName(*at)) {
            takeWord(at, end, table);
        } else {
            const char* const begin = at;
            at = skip(at, end, isDigit);
            if (at == begin) {
                return false;
            }
        }
        return at != end && *at++ == ']';
    }

    Operand::Kind takeNumber() {
        at = skip(at, end, isDigit);
        if (at == end || *at != '.') {
            return Operand::Kind::Integer;
        }
        at = skip(at + 1, end, isDigit);
        return Operand::Kind::Double;
    }

    /// A string that cannot be taken for anything else wherever it stands: without an escape, what
    /// may be the end of an element, a line break, or an operator behind a blank.
    bool takeString() {
        for (++at; at != end && *at != '"'; ++at) {
            const bool isOperator = isOperatorCharacter(*at) && isSpace(at[-1]);
            if (isOperator || *at == '\\' || *at == ']' || *at == '\n' || *at == '\r') {
                return false;
            }
        }
        if (at == end) {
            return false;
        }
        ++at;
        return true;
    }

    ValueTable& table;
    const char* at;
    const char* const end;
    std::array<std::uint32_t, 5> classes{};  // of the parts: one bit of TokenClass
    std::array<PackedOperand, 5> operands{};
    std::size_t count = 0;  // of parts
};

}  // namespace

void FunctionReader::read(const IRFunction& function) {
    table.clear();
    lines.clear();
    groups.clear();
    std::size_t count = 0;
    for (const IRBasicBlock& block : function.getBlocks()) {
        count += block.getInstructions().size();
    }
    lines.reserve(count);
    groups.reserve(count * current.size());  // memory that stays unused is never touched
    for (const IRBasicBlock& block : function.getBlocks()) {
        const IRInstructionList& instructions = block.getInstructions();
        for (std::size_t index = 0; index < instructions.size(); ++index) {
            readLine(trim(instructions.text(index)));
        }
    }
}

void FunctionReader::readLine(std::string_view text) {
    PlainLine line{text, table};
    const PlainForm* form = line.cut() ? line.form() : nullptr;
    if (form == nullptr) {
        readAnyLine(text);
        return;
    }
    lines.push_back({form->form, form->groupCount, static_cast<std::uint32_t>(groups.size())});
    for (std::size_t group = 0; group < form->groupCount; ++group) {
        groups.push_back(line[form->groups[group]]);
    }
}

void FunctionReader::readAnyLine(std::string_view text) {
    addWords(text);
    const IRLine line = recognise(text);
    const auto first = static_cast<std::uint32_t>(groups.size());
    if (line.form == IRForm::None) {
        groups.emplace_back(text, Operand::Kind::Word);
    } else {
        for (const std::string_view group : line.groups) {
            if (group.data() != nullptr) {
                groups.emplace_back(trim(group), Operand::Kind::Unknown);
            }
        }
    }
    lines.push_back({line.form, static_cast<std::uint8_t>(groups.size() - first), first});
}

// Only now are all words known: what the recogniser left to be found out is found out here.
Instruction FunctionReader::operator[](std::size_t line) {
    const Line& read = lines[line];
    for (std::size_t group = 0; group < read.groupCount; ++group) {
        const PackedOperand& packed = groups[read.firstGroup + group];
        Operand& operand = current[group];
        if (packed.kind() == Operand::Kind::Unknown) {
            operand = operandOf(packed.text());
        } else {
            operand.text = packed.text();
            operand.value = packed.word() != 0 ? &table[packed.word()] : nullptr;
            operand.kind = packed.kind();
        }
    }
    return {read.form, {current.data(), read.groupCount}};
}

/// Adds every word of a line that has the shape of a name, outside of string literals. Character
/// literals are not left out (kept): what is spelled in them counts as a name.
void FunctionReader::addWords(std::string_view text) {
    constexpr unsigned wordOrString = CharacterClass::letter | CharacterClass::quote;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (true) {
        at = skip(at, end, [](char character) { return !hasClass(character, wordOrString); });
        if (at == end) {
            return;
        }
        if (*at == '"') {
            const auto quote = static_cast<std::size_t>(at - text.data());
            at = text.data() + std::min(stringLiteralEnd(text, quote), text.size());
        } else {
            takeWord(at, end, table);
        }
    }
}

// The tests exclude each other by what they ask of the first character.
Operand FunctionReader::operandOf(std::string_view text, LineBreaks lineBreaks) {
    using Kind = Operand::Kind;
    Operand read{trim(text), nullptr, Kind::Unknown};
    std::string_view array;
    std::string_view index;
    if (isIdentifier(read.text)) {
        read.value = table.find(read.text);
        const bool isBoolean =
            read.value == nullptr && reservedWordClass(read.text) == TokenClass::boolean;
        read.kind = isBoolean ? Kind::Boolean : Kind::Named;
    } else if (parseArrayAccess(read.text, array, index, lineBreaks)) {
        read.kind = Kind::Element;
        read.value = table.find(array);
    } else if (isStringLiteral(read.text)) {
        read.kind = Kind::String;
    } else if (isCharacterLiteral(read.text)) {
        read.kind = Kind::Character;
    } else if (isIntegerLiteral(read.text)) {
        read.kind = Kind::Integer;
    } else if (isDoubleLiteral(read.text)) {
        read.kind = Kind::Double;
    }
    return read;
}
