// Reading lines. Comes in: the lines of a function; goes out: their forms and groups, and the words
// in them. Nearly all lines are plain: words, numbers, strings, elements and operators with one
// blank between two. Those are cut at their blanks into tokens, whose classes tell the form:
//
//     _t1     =        "a\n"   +        x
//     value   assign   string  binary   value      is a binary operation: all but '=' are groups
//
// All other lines - with character literals, signed numbers, strings that look like an operation or
// like the end of an element - are left to the recogniser of forms, which is exact for every line.
// The two have to agree on the plain ones.

#include "codegen/functionReader.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <tuple>

#include "codegen/irText.hpp"
#include "shared/krelir-cfg/ir-function.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

namespace {

/// The classes that the tokens of a plain line of some form may have; none behind its end.
struct PlainShape {
    IRForm form;
    std::array<std::uint32_t, 6> tokens;
};

using namespace TokenClass;

constexpr std::uint32_t anyOperand = value | boolean | integer | real | string | element;

constexpr std::array<PlainShape, irFormCount> plainShapes = {{
    {IRForm::IntegerParameter, {param, integerType, value}},
    {IRForm::DoubleParameter, {param, doubleType, value}},
    {IRForm::Argument, {arg, anyOperand}},
    {IRForm::CallWithResult, {value, assign, call, callee, integer}},
    {IRForm::Call, {call, callee, integer}},
    {IRForm::Branch, {branch, anyOperand, jump, blockName}},
    {IRForm::Jump, {jump, blockName}},
    {IRForm::Return, {leave}},
    {IRForm::ReturnValue, {leave, anyOperand}},
    {IRForm::Conversion, {value, assign, conversion, anyOperand}},
    {IRForm::IntToDouble, {value, assign, intToDouble, anyOperand}},
    {IRForm::DoubleToString, {value, assign, doubleToString, anyOperand}},
    {IRForm::BinaryOperation, {value, assign, anyOperand, anyBinary, anyOperand}},
    {IRForm::UnaryOperation, {value, assign, anyUnary, anyOperand}},
    {IRForm::ElementStore, {element, assign, anyOperand}},
    {IRForm::Copy, {value, assign, anyOperand}},
}};
static_assert(hasRowForEachForm(plainShapes));

/// The classes of tokens that are no group of any form: they only tell it from others.
constexpr std::uint32_t marks =
    arg | call | jump | branch | param | leave | doubleType | intToDouble | doubleToString | assign;

/// Whether the tokens of a shape that are no marks are the groups of its form.
constexpr bool hasGroupsOfForm(const PlainShape& shape) {
    const auto& groups = irFormGroups[static_cast<std::size_t>(shape.form)].groups;
    std::size_t group = 0;
    for (const std::uint32_t token : shape.tokens) {
        if (token != 0 && (token & marks) == 0) {
            const bool isOperand = (token & anyOperand) != 0 && token != integer;
            if (groups[group++] != (isOperand ? IRGroup::Operand : IRGroup::Text)) {
                return false;
            }
        }
    }
    return group == groupCountOf(shape.form);
}
static_assert(std::all_of(plainShapes.begin(), plainShapes.end(), hasGroupsOfForm));

/// What stands behind a line, as one more class.
constexpr std::uint32_t lineEnd = 1U << 31;

constexpr std::size_t lowestBit(std::uint32_t set) {
    return static_cast<std::size_t>(std::countr_zero(set));
}

/// For each place in a line and each class there, the shapes that allow it: bit i stands for row i.
constexpr auto shapesByToken = [] {
    std::array<std::array<std::uint32_t, 32>, std::tuple_size_v<decltype(PlainShape::tokens)>>
        sets{};
    for (std::size_t row = 0; row < plainShapes.size(); ++row) {
        for (std::size_t place = 0; place < sets.size(); ++place) {
            const std::uint32_t token = plainShapes[row].tokens[place];
            const std::uint32_t allowed = token != 0 ? token : lineEnd;
            for (std::size_t bit = 0; bit < sets[place].size(); ++bit) {
                sets[place][bit] |= (allowed >> bit & 1) << row;
            }
        }
    }
    return sets;
}();

template <typename Predicate>
const char* skip(const char* at, const char* end, Predicate isSkipped) {
    while (at != end && isSkipped(*at)) {
        ++at;
    }
    return at;
}

/// Whether an operator of two operands with blanks on both sides begins at `at`.
bool holdsOperator(const char* at, const char* end) {
    const char* const operatorEnd = skip(at, end, isOperatorCharacter);
    return operatorEnd != at && isSpace(*operatorEnd) &&
           (operatorClass({at, operatorEnd}) & anyBinary) != 0;
}

/// Whether a pattern could take a part of a string for something else: for the end of an element in
/// front of an equals sign, for an operator, or for a line break, which few groups can hold.
bool looksLikeMore(std::string_view string) {
    const auto isHarmless = [](char character) { return !isSpace(character) && character != ']'; };
    const char* const end = string.data() + string.size() - 1;  // at the closing quote
    for (const char* at = string.data(); (at = skip(at, end, isHarmless)) != end; ++at) {
        const bool isElementEnd = *at == ']' && *skip(at + 1, end, isSpace) == '=';
        const bool isLineBreak = *at == '\n' || *at == '\r';
        if (isElementEnd || isLineBreak || (*at != ']' && holdsOperator(at + 1, end))) {
            return true;
        }
    }
    return false;
}

/// Cuts a line into tokens. Appends those that are groups to the groups of the lines before, and
/// adds the words that it meets to a table.
class PlainLine {
public:
    PlainLine(std::string_view line, ValueTable& words, std::vector<Operand>& allGroups)
        : table(words), groups(allGroups), at(line.data()), end(at + line.size()) {}

    /// The form of the line. `None` when it is not plain; the groups and words up to there have
    /// been added.
    IRForm read() {
        std::uint32_t possible = ~0U;
        for (std::size_t place = 0; at != end; ++place) {
            const std::uint32_t tokenClass = takeToken();
            if (tokenClass == 0) {
                return IRForm::None;
            }
            possible &= shapesByToken[place][lowestBit(tokenClass)];
            if (possible == 0) {
                return IRForm::None;
            }
            if (at == end) {
                possible &= shapesByToken[place + 1][lowestBit(lineEnd)];
                return possible != 0 ? plainShapes[lowestBit(possible)].form : IRForm::None;
            }
            if (*at++ != ' ') {
                return IRForm::None;
            }
        }
        return IRForm::None;
    }

private:
    /// Moves to the end of a token and gives its class; 0 when it is none of plain lines.
    std::uint32_t takeToken() {
        if (beginsName(*at)) {
            return takeName();
        }
        if (isDigit(*at)) {
            return takeNumber();
        }
        return *at == '"' ? takeString() : takeOperator();
    }

    /// Adds a word to the table, whose key is made on the way to its end.
    ValueTable::Entry takeWord() {
        const char* const begin = at;
        std::uint64_t packed = 0;
        do {
            packed = KeyedText::packNext(packed, *at++);
        } while (at != end && isNameCharacter(*at));
        return table.add(KeyedText{{begin, at}, packed});
    }

    /// A word, an element of the array that the word names, or a callee.
    std::uint32_t takeName() {
        const char* const begin = at;
        const auto [number, wordClass] = takeWord();
        const char next = at != end ? *at : '\0';
        if (next == ',') {
            groups.emplace_back(std::string_view{begin, at++}, Operand::Kind::Text);
            return callee;
        }
        if (wordClass == value) {
            const bool isElement = next == '[';
            if (isElement && !takeIndex()) {
                return 0;
            }
            groups.emplace_back(std::string_view{begin, at},
                                isElement ? Operand::Kind::Element : Operand::Kind::Named, number);
            return isElement ? element : value;
        }
        if ((wordClass & marks) == 0) {
            const int letters = wordClass == blockName ? 1 : 0;  // before the number
            groups.emplace_back(std::string_view{begin + letters, at}, wordClass == boolean
                                                                           ? Operand::Kind::Boolean
                                                                           : Operand::Kind::Text);
        }
        return wordClass;
    }

    /// One word or integer in brackets.
    bool takeIndex() {
        const char* const begin = ++at;
        if (at != end && beginsName(*at)) {
            at = skip(at, end, isNameCharacter);
            table.add(std::string_view{begin, at});
        } else {
            at = skip(at, end, isDigit);
        }
        return at != begin && at != end && *at++ == ']';
    }

    std::uint32_t takeNumber() {
        const char* const begin = at;
        at = skip(at, end, isDigit);
        const bool isReal = at != end && *at == '.';
        if (isReal) {
            at = skip(at + 1, end, isDigit);
        }
        groups.emplace_back(std::string_view{begin, at},
                            isReal ? Operand::Kind::Double : Operand::Kind::Integer);
        return isReal ? real : integer;
    }

    std::uint32_t takeString() {
        const std::size_t size = stringLiteralEnd({at, end}, 0);
        if (size == std::string_view::npos || looksLikeMore({at, size})) {
            return 0;
        }
        groups.emplace_back(std::string_view{at, size}, Operand::Kind::String);
        at += size;
        return string;
    }

    std::uint32_t takeOperator() {
        const char* const begin = at;
        at = skip(at, end, isOperatorCharacter);
        if (at == begin) {
            return 0;
        }
        const std::uint32_t tokenClass = operatorClass({begin, at});
        if (tokenClass != assign) {
            groups.emplace_back(std::string_view{begin, at}, Operand::Kind::Text);
        }
        return tokenClass;
    }

    ValueTable& table;
    std::vector<Operand>& groups;
    const char* at;
    const char* const end;
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
    groups.reserve(count * maxGroupCount);  // memory that stays unused is never touched
    for (const IRBasicBlock& block : function.getBlocks()) {
        const IRInstructionList& instructions = block.getInstructions();
        for (std::size_t index = 0; index < instructions.size(); ++index) {
            readLine(trim(instructions.text(index)));
        }
    }
}

void FunctionReader::readLine(std::string_view line) {
    const std::size_t first = groups.size();
    IRForm form = PlainLine{line, table, groups}.read();
    if (form == IRForm::None) {
        groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(first), groups.end());
        form = readAnyLine(line);
    }
    lines.push_back({form, static_cast<std::uint32_t>(first)});
}

// The words come first: what the operands stand for depends on them.
IRForm FunctionReader::readAnyLine(std::string_view line) {
    addWords(line);
    const IRLine found = recognise(line);
    if (found.form == IRForm::None) {
        groups.emplace_back(line, Operand::Kind::Text);
        return found.form;
    }
    for (std::size_t group = 0; group < groupCountOf(found.form); ++group) {
        const std::string_view text = trim(found.groups[group]);
        const bool isOperand =
            irFormGroups[static_cast<std::size_t>(found.form)].groups[group] == IRGroup::Operand;
        groups.push_back(isOperand ? operandOf(text) : Operand{text, Operand::Kind::Text});
    }
    return found.form;
}

/// Adds every word of a line that has the shape of a name, outside of string literals. Character
/// literals are not left out (kept): what is spelled in them counts as a name.
void FunctionReader::addWords(std::string_view line) {
    constexpr unsigned wordOrString = CharacterClass::letter | CharacterClass::quote;
    const char* at = line.data();
    const char* const end = at + line.size();
    while (true) {
        at = skip(at, end, [](char character) { return !hasClass(character, wordOrString); });
        if (at == end) {
            return;
        }
        if (*at == '"') {
            const auto quote = static_cast<std::size_t>(at - line.data());
            at = line.data() + std::min(stringLiteralEnd(line, quote), line.size());
        } else {
            const char* const begin = at;
            at = skip(at, end, isNameCharacter);
            table.add(std::string_view{begin, at});
        }
    }
}

// The tests exclude each other by what they ask of the first character.
Operand FunctionReader::operandOf(std::string_view text, LineBreaks lineBreaks) const {
    using Kind = Operand::Kind;
    const std::string_view trimmed = trim(text);
    if (isIdentifier(trimmed)) {
        const bool isBoolean = reservedWordClass(trimmed) == boolean;
        return {trimmed, isBoolean ? Kind::Boolean : Kind::Named, table.numberOf(trimmed)};
    }
    std::string_view array;
    std::string_view index;
    if (parseArrayAccess(trimmed, array, index, lineBreaks)) {
        return {trimmed, Kind::Element, table.numberOf(array)};
    }
    struct LiteralKind {
        bool (*isLiteral)(std::string_view);
        Kind kind;
    };
    static constexpr std::array<LiteralKind, 4> literalKinds = {{
        {isStringLiteral, Kind::String},
        {isCharacterLiteral, Kind::Character},
        {isIntegerLiteral, Kind::Integer},
        {isDoubleLiteral, Kind::Double},
    }};
    for (const auto& [isLiteral, kind] : literalKinds) {
        if (isLiteral(trimmed)) {
            return {trimmed, kind};
        }
    }
    return {trimmed, Kind::Unknown};
}

}  // namespace krel
