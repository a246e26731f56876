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

using namespace TokenClass;

/// What stands behind a line, as one more class.
constexpr std::uint32_t lineEnd = 1U << 31;

constexpr std::size_t lowestBit(std::uint32_t set) {
    return static_cast<std::size_t>(std::countr_zero(set));
}

/// For each place in a line and each class there, the forms that allow it, one bit each.
constexpr auto shapesByToken = [] {
    std::array<std::array<std::uint32_t, 32>, std::tuple_size_v<decltype(IRShape::tokens)>> sets{};
    for (std::size_t row = 0; row < irShapes.size(); ++row) {
        for (std::size_t place = 0; place < sets.size(); ++place) {
            const std::uint32_t token = irShapes[row].tokens[place];
            const std::uint32_t allowed = token != 0 ? token : lineEnd;
            for (std::size_t bit = 0; bit < sets[place].size(); ++bit) {
                sets[place][bit] |= (allowed >> bit & 1) << row;
            }
        }
    }
    return sets;
}();

/// Where the run of characters of some classes that begins at `at` ends.
const char* skip(const char* at, const char* end, unsigned characterClasses) {
    while (at != end && hasClass(*at, characterClasses)) {
        ++at;
    }
    return at;
}

/// Whether an operator of two operands with a blank behind it stands at `begin` of a string.
bool holdsOperator(std::string_view string, std::size_t begin) {
    const std::size_t end = endOfRun(string, begin, CharacterClass::operation);
    return end != begin && isSpace(string[end]) &&
           (operatorClass(string.substr(begin, end - begin)) & anyBinary) != 0;
}

/// Whether a pattern could take a part of a string for something else: for the end of an element in
/// front of an equals sign, for an operator, or for a line break, which few groups can hold. The
/// closing quote ends every search.
bool looksLikeMore(std::string_view string) {
    for (std::size_t at = 1; at + 1 < string.size(); ++at) {
        if (isSpace(string[at])) {
            const bool isLineBreak = string[at] == '\n' || string[at] == '\r';
            if (isLineBreak || holdsOperator(string, at + 1)) {
                return true;
            }
        } else if (string[at] == ']' &&
                   string[endOfRun(string, at + 1, CharacterClass::space)] == '=') {
            return true;
        }
    }
    return false;
}

/// Cuts a line into tokens. Writes down those that are groups, one more at most than a form has,
/// and adds the words that it meets to a table.
class PlainLine {
public:
    PlainLine(std::string_view line, ValueTable& words, Operand* groups)
        : table(words), next(groups), at(line.data()), end(at + line.size()) {}

    /// Behind the last group that has been written.
    Operand* groupsEnd() const { return next; }

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
            if (at == end) {
                possible &= shapesByToken[place + 1][lowestBit(lineEnd)];
                return possible != 0 ? static_cast<IRForm>(lowestBit(possible)) : IRForm::None;
            }
            if (possible == 0 || *at++ != ' ') {
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
        const char behind = at != end ? *at : '\0';
        if (behind == ',') {
            addGroup(begin, Operand::Kind::Text);
            ++at;
            return callee;
        }
        if (wordClass == value) {
            const bool isElement = behind == '[';
            if (isElement && !takeIndex()) {
                return 0;
            }
            addGroup(begin, isElement ? Operand::Kind::Element : Operand::Kind::Named, number);
            return isElement ? element : value;
        }
        if (isGroup(wordClass)) {
            const int letters = wordClass == blockName ? 1 : 0;  // before the number
            addGroup(begin + letters,
                     wordClass == boolean ? Operand::Kind::Boolean : Operand::Kind::Text);
        }
        return wordClass;
    }

    /// One word or integer in brackets.
    bool takeIndex() {
        const char* const begin = ++at;
        if (at != end && beginsName(*at)) {
            at = skip(at, end, CharacterClass::inName);
            table.add(std::string_view{begin, at});
        } else {
            at = skip(at, end, CharacterClass::digit);
        }
        return at != begin && at != end && *at++ == ']';
    }

    std::uint32_t takeNumber() {
        const char* const begin = at;
        at = skip(at, end, CharacterClass::digit);
        const bool isReal = at != end && *at == '.';
        if (isReal) {
            at = skip(at + 1, end, CharacterClass::digit);
        }
        addGroup(begin, isReal ? Operand::Kind::Double : Operand::Kind::Integer);
        return isReal ? real : integer;
    }

    std::uint32_t takeString() {
        const char* const begin = at;
        const std::size_t size = stringLiteralEnd({at, end}, 0);
        if (size == std::string_view::npos || looksLikeMore({at, size})) {
            return 0;
        }
        at += size;
        addGroup(begin, Operand::Kind::String);
        return string;
    }

    std::uint32_t takeOperator() {
        const char* const begin = at;
        at = skip(at, end, CharacterClass::operation);
        const std::uint32_t tokenClass = at != begin ? operatorClass({begin, at}) : 0;
        if (isGroup(tokenClass)) {
            addGroup(begin, Operand::Kind::Text);
        }
        return tokenClass;
    }

    void addGroup(const char* begin, Operand::Kind kind, std::uint32_t valueNumber = 0) {
        *next++ = {{begin, at}, kind, valueNumber};
    }

    ValueTable& table;
    Operand* next;
    const char* at;
    const char* const end;
};

}  // namespace

void FunctionReader::read(const IRFunction& function) {
    table.clear();
    lines.clear();
    std::size_t count = 0;
    for (const IRBasicBlock& block : function.getBlocks()) {
        count += block.getInstructions().size();
    }
    lines.reserve(count);
    if (const std::size_t room = count * maxGroupCount + 1; room > groupRoom) {
        groups = std::make_unique_for_overwrite<Operand[]>(room);  // untouched where unused
        groupRoom = room;
    }
    Operand* next = groups.get();
    for (const IRBasicBlock& block : function.getBlocks()) {
        block.getInstructions().forEachText([&](std::string_view text) {
            const std::string_view line = trim(text);
            const auto first = static_cast<std::uint32_t>(next - groups.get());
            PlainLine plain{line, table, next};
            IRForm form = plain.read();
            if (form != IRForm::None) {
                next = plain.groupsEnd();
            } else {
                form = readAnyLine(line, next);
                next += form != IRForm::None ? groupCountOf(form) : 1;
            }
            lines.push_back({form, first});
        });
    }
}

// The words come first: what the operands stand for depends on them.
IRForm FunctionReader::readAnyLine(std::string_view line, Operand* next) {
    addWords(line);
    const IRLine found = recognise(line);
    if (found.form == IRForm::None) {
        *next = {line, Operand::Kind::Text};
        return found.form;
    }
    const auto* group = found.groups.begin();
    for (const std::uint32_t classes : shapeOf(found.form).tokens) {
        if (isGroup(classes)) {
            const std::string_view text = trim(*group++);
            *next++ = isOperand(classes) ? operandOf(text) : Operand{text, Operand::Kind::Text};
        }
    }
    return found.form;
}

/// Adds every word of a line that has the shape of a name, outside of string literals. Character
/// literals are not left out (kept): what is spelled in them counts as a name.
void FunctionReader::addWords(std::string_view line) {
    for (std::size_t at = 0; at < line.size();) {
        if (beginsName(line[at])) {
            const std::size_t end = endOfRun(line, at, CharacterClass::inName);
            table.add(line.substr(at, end - at));
            at = end;
        } else {
            at = line[at] == '"' ? stringLiteralEnd(line, at) : at + 1;
        }
    }
}

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
    if (isQuoted(trimmed, '"')) {
        return {trimmed, Kind::String};
    }
    if (isQuoted(trimmed, '\'')) {
        return {trimmed, Kind::Character};
    }
    if (isIntegerLiteral(trimmed)) {
        return {trimmed, Kind::Integer};
    }
    return {trimmed, isDoubleLiteral(trimmed) ? Kind::Double : Kind::Unknown};
}

}  // namespace krel
