// The recogniser of lines. The patterns below define the forms; next to each stands the function
// that finds the same match by scanning. Matching them with a regular-expression engine would cost
// microseconds a line and a stack frame a character. What the functions have to reproduce of an
// engine is greed: of several ways to match, a group takes as much as it can, from left to right.

#include "codegen/irForms.hpp"

#include <algorithm>

#include "codegen/irText.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

namespace {

using Groups = decltype(IRLine::groups);

/// A line, read from left to right. A step that fails leaves the position undefined.
class Scanner {
public:
    explicit Scanner(std::string_view line, std::size_t position = 0) : text(line), at(position) {}

    std::size_t position() const { return at; }
    bool atEnd() const { return at == text.size(); }

    bool literal(std::string_view expected) {
        const bool found = text.substr(at).starts_with(expected);
        at += expected.size();
        return found;
    }

    /// `\s*`
    void spaces() { at = endOfRun(text, at, CharacterClass::space); }

    /// `\s+`
    bool someSpaces() {
        const std::size_t begin = at;
        spaces();
        return at > begin;
    }

    /// `([A-Za-z_]\w*)`
    bool name(std::string_view& group) {
        if (at == text.size() || !beginsName(text[at])) {
            return false;
        }
        const std::size_t begin = at;
        at = endOfRun(text, at, CharacterClass::inName);
        group = text.substr(begin, at - begin);
        return true;
    }

    /// `([0-9]+)$`
    bool numberAtEnd(std::string_view& group) {
        group = text.substr(at);
        at = endOfRun(text, at, CharacterClass::digit);
        return !group.empty() && atEnd();
    }

private:
    std::string_view text;
    std::size_t at;
};

/// What `.` cannot match from some position on: the first line break, and where the blanks that
/// begin with it end. Both are the end of the line when there is no line break. From the 'a' on:
///
///     x = a<LF> <LF>+ b
///          ^        ^
///        begin     end
struct Obstacle {
    std::size_t begin;
    std::size_t end;
};

/// A line, with what all assignments have in common scanned already: `^([A-Za-z_]\w*)\s*=\s*`.
class ScannedLine {
public:
    explicit ScannedLine(std::string_view line)
        : text(line), lastPart(line.find_last_of("\n\r") + 1) {
        Scanner scanner{text};
        if (!scanner.name(target)) {
            return;
        }
        scanner.spaces();
        isAssignment = scanner.literal("=");
        if (isAssignment) {
            afterEquals = scanner.position();
            scanner.spaces();
            assigned = scanner.position();
        }
    }

    Obstacle obstacleFrom(std::size_t position) const {
        const std::size_t begin = std::min(text.find_first_of("\n\r", position), text.size());
        return {begin, endOfRun(text, begin, CharacterClass::space)};
    }

    /// `\s{minimum,}(.+)$` from `position` on. The blanks go to `\s` as far as they can, so the
    /// group begins at the first other character; if there is none, with the last blank. From
    /// behind the equals sign, with <VT> for a blank that trimming leaves alone:
    ///
    ///     x =  y + z       the group is "y + z"
    ///     x = <VT><VT>     the group is the second <VT>
    bool spacesAndRest(std::size_t position, std::size_t minimum, std::string_view& group) const {
        std::size_t begin = endOfRun(text, position, CharacterClass::space);
        if (begin == text.size()) {
            --begin;
        }
        group = text.substr(begin);
        return begin >= position + minimum && begin >= lastPart;
    }

    /// `\s*(.+)\s+` from `low` up to `end`, where the character before `end` is a blank and the
    /// first other one from `low` on stands at `first`, before the obstacle. The group begins there
    /// and takes all but that last blank, or stops at a line break if only blanks follow. When
    /// `first` is `end`, one of the blanks is the group: the last one that leaves another. With
    /// `low` behind the equals sign and `end` at the plus sign, '_' for each blank:
    ///
    ///     x =_a__+ b         `\s*` takes "_", the group "a_" and `\s+` "_"
    ///     x =_a<LF>_+ b      `\s*` takes "_", the group "a" and `\s+` "<LF>_"
    ///     x =_a<LF>c_+ b     no match: the group would have to hold the line break
    ///     x =___+ b          `\s*`, the group and `\s+` take "_" each
    ///     x =_<LF>_+ b       `\s*` takes nothing, the group "_" and `\s+` "<LF>_"
    bool greedyUpTo(std::size_t low, std::size_t first, std::size_t end, const Obstacle& obstacle,
                    std::string_view& group) const {
        if (first < end) {
            const std::size_t stop = std::min(obstacle.begin, end - 1);
            group = text.substr(first, stop - first);
            return stop == end - 1 || end <= obstacle.end;
        }
        for (std::size_t begin = end - 1; begin > low; --begin) {
            group = text.substr(begin - 1, 1);
            if (group != "\n" && group != "\r") {
                return true;
            }
        }
        return false;
    }

    const std::string_view text;
    const std::size_t lastPart;  // begins behind the last line break
    std::string_view target;
    bool isAssignment = false;
    // Of an assignment only:
    std::size_t afterEquals = 0;
    std::size_t assigned = 0;  // past the blanks behind the equals sign
};

/// `^param\s+(word)\s+([A-Za-z_]\w*)$` for the words of a class.
bool parameterOf(const ScannedLine& line, std::uint32_t wordClass, std::string_view& type,
                 std::string_view& target) {
    Scanner scanner{line.text};
    return scanner.literal(Keyword::Param) && scanner.someSpaces() && scanner.name(type) &&
           reservedWordClass(type) == wordClass && scanner.someSpaces() && scanner.name(target) &&
           scanner.atEnd();
}

bool matchIntegerParameter(const ScannedLine& line, Groups& groups) {
    return parameterOf(line, TokenClass::integerType, groups[0], groups[1]);
}

bool matchDoubleParameter(const ScannedLine& line, Groups& groups) {
    std::string_view type;
    return parameterOf(line, TokenClass::doubleType, type, groups[0]);
}

/// A keyword, one blank and anything, line breaks too.
bool keywordAndRest(const ScannedLine& line, std::string_view keyword, std::string_view& group) {
    Scanner scanner{line.text};
    if (!scanner.literal(keyword) || !scanner.literal(" ")) {
        return false;
    }
    group = line.text.substr(scanner.position());
    return true;
}

bool matchArgument(const ScannedLine& line, Groups& groups) {
    return keywordAndRest(line, Keyword::Arg, groups[0]);
}

/// `call\s+([A-Za-z_]\w*),\s*([0-9]+)$`
bool callFrom(Scanner scanner, std::string_view& callee, std::string_view& count) {
    if (!scanner.literal(Keyword::Call) || !scanner.someSpaces() || !scanner.name(callee) ||
        !scanner.literal(",")) {
        return false;
    }
    scanner.spaces();
    return scanner.numberAtEnd(count);
}

bool matchCallWithResult(const ScannedLine& line, Groups& groups) {
    groups[0] = line.target;
    return line.isAssignment && callFrom(Scanner{line.text, line.assigned}, groups[1], groups[2]);
}

bool matchCall(const ScannedLine& line, Groups& groups) {
    return callFrom(Scanner{line.text}, groups[0], groups[1]);
}

/// Finds `goto\s+B([0-9]+)$` from the line's end: sets the group and where it begins.
bool gotoAtEnd(std::string_view text, std::size_t& begin, std::string_view& number) {
    std::size_t at = text.size();
    while (at > 0 && isDigit(text[at - 1])) {
        --at;
    }
    number = text.substr(at);
    if (number.empty() || at == 0 || text[at - 1] != Keyword::Block[0]) {
        return false;
    }
    const std::size_t spacesEnd = --at;
    while (at > 0 && isSpace(text[at - 1])) {
        --at;
    }
    constexpr std::string_view word = Keyword::Goto;
    if (at == spacesEnd || !text.substr(0, at).ends_with(word)) {
        return false;
    }
    begin = at - word.size();
    return true;
}

// The condition takes as much as it can, so the line is split at its last "goto":
//
//     if "x goto B9" goto B4     the condition is "x goto B9" with its quotes, the block is 4
bool matchBranch(const ScannedLine& line, Groups& groups) {
    const std::string_view text = line.text;
    Scanner scanner{text};
    std::size_t end = 0;
    if (!scanner.literal(Keyword::If) || !gotoAtEnd(text, end, groups[1])) {
        return false;
    }
    const std::size_t low = scanner.position() + 1;
    if (!scanner.someSpaces() || end <= low || !isSpace(text[end - 1])) {
        return false;
    }
    const std::size_t first = scanner.position();
    return line.greedyUpTo(low, first, end, line.obstacleFrom(first), groups[0]);
}

bool matchJump(const ScannedLine& line, Groups& groups) {
    Scanner scanner{line.text};
    return scanner.literal(Keyword::Goto) && scanner.someSpaces() &&
           scanner.literal(Keyword::Block) && scanner.numberAtEnd(groups[0]);
}

bool matchReturn(const ScannedLine& line, Groups& /*groups*/) {
    return line.text == Keyword::Return;
}

bool matchReturnValue(const ScannedLine& line, Groups& groups) {
    return keywordAndRest(line, Keyword::Return, groups[0]);
}

/// `(word)\s+(.+)$` for the words of a class, behind the equals sign.
bool conversionOf(const ScannedLine& line, std::uint32_t wordClass, std::string_view& word,
                  std::string_view& operand) {
    Scanner scanner{line.text, line.assigned};
    return line.isAssignment && scanner.name(word) && reservedWordClass(word) == wordClass &&
           line.spacesAndRest(scanner.position(), 1, operand);
}

bool matchConversion(const ScannedLine& line, Groups& groups) {
    groups[0] = line.target;
    return conversionOf(line, TokenClass::conversion, groups[1], groups[2]);
}

/// The same for a class of one word, which is no group.
template <std::uint32_t wordClass>
bool matchConversionBy(const ScannedLine& line, Groups& groups) {
    groups[0] = line.target;
    std::string_view word;
    return conversionOf(line, wordClass, word, groups[1]);
}

/// The operator of a binary operation whose last character stands at `last`, with a blank on both
/// sides and not before `low`; empty if there is none.
std::string_view operatorEndingAt(std::string_view text, std::size_t last, std::size_t low) {
    if (!hasClass(text[last], CharacterClass::operation) || !isSpace(text[last + 1])) {
        return {};
    }
    const std::size_t size = isSpace(text[last - 1]) ? 1 : 2;
    const std::size_t begin = last + 1 - size;
    if (begin <= low || !isSpace(text[begin - 1])) {
        return {};
    }
    const std::string_view candidate = text.substr(begin, size);
    const bool isBinary = (operatorClass(candidate) & TokenClass::anyBinary) != 0;
    return isBinary ? candidate : std::string_view{};
}

// The left operand takes as much as it can, so the line is split at its last operator that has
// blanks on both sides and something behind it:
//
//     x = a - b + c          the left operand is "a - b", the right one "c"
//     x = "a" + " - "        the left operand is "a" + " with its quotes, the right one "
//     x = a + b -            the left operand is "a", the right one "b -"
bool matchBinaryOperation(const ScannedLine& line, Groups& groups) {
    if (!line.isAssignment) {
        return false;
    }
    const std::string_view text = line.text;
    const std::size_t low = line.afterEquals;
    const Obstacle obstacle = line.obstacleFrom(line.assigned);
    groups[0] = line.target;
    for (std::size_t last = text.size() - 1; last-- > low + 1;) {
        groups[2] = operatorEndingAt(text, last, low);
        if (!groups[2].empty() && line.spacesAndRest(last + 1, 1, groups[3]) &&
            line.greedyUpTo(low, line.assigned, last + 1 - groups[2].size(), obstacle, groups[1])) {
            return true;
        }
    }
    return false;
}

bool matchUnaryOperation(const ScannedLine& line, Groups& groups) {
    if (!line.isAssignment) {
        return false;
    }
    groups[0] = line.target;
    groups[1] = line.text.substr(line.assigned, 1);
    return (operatorClass(groups[1]) & TokenClass::anyUnary) != 0 &&
           line.spacesAndRest(line.assigned + 1, 0, groups[2]);
}

// The index takes as much as it can, so the element ends at the last bracket that is followed by
// an equals sign:
//
//     a[0] = b[1] = c        the element is "a[0] = b[1]", the value "c"
//     a[0] = "[1] = "        the element is "a[0] = "[1]", the value a quote
//     a[0] = b[1]            the element is "a[0]", the value "b[1]"
bool matchElementStore(const ScannedLine& line, Groups& groups) {
    const std::string_view text = line.text;
    Scanner array{text, line.target.size()};
    array.spaces();
    if (line.target.empty() || !array.literal("[")) {
        return false;
    }
    const std::size_t index = array.position();
    for (std::size_t close = text.rfind(']', line.obstacleFrom(index).begin);
         close != std::string_view::npos && close > index; close = text.rfind(']', close - 1)) {
        groups[0] = text.substr(0, close + 1);
        Scanner scanner{text, close + 1};
        scanner.spaces();
        if (scanner.literal("=") && line.spacesAndRest(scanner.position(), 0, groups[1])) {
            return true;
        }
    }
    return false;
}

bool matchCopy(const ScannedLine& line, Groups& groups) {
    groups[0] = line.target;
    return line.isAssignment && line.spacesAndRest(line.afterEquals, 0, groups[1]);
}

struct FormRow {
    IRForm form;
    const char* pattern;
    bool (*match)(const ScannedLine&, Groups&);
};

// Reordering the rows changes the language.
constexpr std::array<FormRow, irFormCount> formRows = {{
    {IRForm::IntegerParameter, R"(^param\s+(int|boolean|character|string)\s+([A-Za-z_]\w*)$)",
     matchIntegerParameter},
    {IRForm::DoubleParameter, R"(^param\s+double\s+([A-Za-z_]\w*)$)", matchDoubleParameter},
    {IRForm::Argument, R"(^arg ([\s\S]*)$)", matchArgument},
    {IRForm::CallWithResult, R"(^([A-Za-z_]\w*)\s*=\s*call\s+([A-Za-z_]\w*),\s*([0-9]+)$)",
     matchCallWithResult},
    {IRForm::Call, R"(^call\s+([A-Za-z_]\w*),\s*([0-9]+)$)", matchCall},
    {IRForm::Branch, R"(^if\s+(.+)\s+goto\s+B([0-9]+)$)", matchBranch},
    {IRForm::Jump, R"(^goto\s+B([0-9]+)$)", matchJump},
    {IRForm::Return, R"(^return$)", matchReturn},
    {IRForm::ReturnValue, R"(^return ([\s\S]*)$)", matchReturnValue},
    {IRForm::Conversion,
     R"(^([A-Za-z_]\w*)\s*=\s*(inttostring|chartostring|booltostring|inttochar|chartoint)\s+(.+)$)",
     matchConversion},
    {IRForm::IntToDouble, R"(^([A-Za-z_]\w*)\s*=\s*inttodouble\s+(.+)$)",
     matchConversionBy<TokenClass::intToDouble>},
    {IRForm::DoubleToString, R"(^([A-Za-z_]\w*)\s*=\s*doubletostring\s+(.+)$)",
     matchConversionBy<TokenClass::doubleToString>},
    {IRForm::BinaryOperation,
     R"(^([A-Za-z_]\w*)\s*=\s*(.+)\s+(\|\||&&|==|!=|<=|>=|<|>|\+|-|\*|/)\s+(.+)$)",
     matchBinaryOperation},
    {IRForm::UnaryOperation, R"(^([A-Za-z_]\w*)\s*=\s*(!|-|\+)\s*(.+)$)", matchUnaryOperation},
    {IRForm::ElementStore, R"(^([A-Za-z_]\w*\s*\[.+\])\s*=\s*(.+)$)", matchElementStore},
    {IRForm::Copy, R"(^([A-Za-z_]\w*)\s*=\s*(.+)$)", matchCopy},
}};

static_assert(hasRowForEachForm(formRows));

}  // namespace

const char* irPatternOf(IRForm form) {
    return formRows[static_cast<std::size_t>(form)].pattern;
}

IRLine recognise(std::string_view text) {
    const ScannedLine line{text};
    for (const FormRow& row : formRows) {
        Groups groups{};
        if (row.match(line, groups)) {
            return {row.form, groups};
        }
    }
    return {};
}

}  // namespace krel
