// The recogniser of lines. The patterns below define the forms; next to each stands the function
// that finds the same match by scanning. Matching them with a regular-expression engine would cost
// microseconds a line and a stack frame a character. What the functions have to reproduce of an
// engine is greed: of several ways to match, a group takes as much as it can, from left to right.

#include "codegen/irForms.hpp"

#include <algorithm>
#include <bit>
#include <utility>

#include "codegen/irText.hpp"

namespace {

using Groups = std::array<std::string_view, 4>;

/// A line, read from left to right. A step that fails leaves the position undefined.
class Scanner {
public:
    explicit Scanner(std::string_view text) : line(text) {}

    std::size_t position() const { return at; }

    bool literal(std::string_view text) {
        const bool found = line.substr(at).starts_with(text);
        at += text.size();
        return found;
    }

    /// `\s*`
    void spaces() {
        while (at < line.size() && isSpace(line[at])) {
            ++at;
        }
    }

    /// `\s+`
    bool someSpaces() {
        const std::size_t begin = at;
        spaces();
        return at > begin;
    }

    /// `([A-Za-z_]\w*)`
    bool name(std::string_view& group) {
        if (at == line.size() || !beginsName(line[at])) {
            return false;
        }
        const std::size_t begin = at;
        while (at < line.size() && isNameCharacter(line[at])) {
            ++at;
        }
        group = line.substr(begin, at - begin);
        return true;
    }

    /// `([0-9]+)$`
    bool numberAtEnd(std::string_view& group) {
        group = line.substr(at);
        return !group.empty() && std::all_of(group.begin(), group.end(), isDigit);
    }

    bool atEnd() const { return at == line.size(); }

    void moveTo(std::size_t position) { at = position; }

private:
    std::string_view line;
    std::size_t at = 0;
};

/// What `.` cannot match, from some position on: the first line break, and where the blanks that
/// begin with it end. Both are the end of the line when there is no line break.
struct Obstacle {
    std::size_t begin;
    std::size_t end;
};

/// A line, with what all assignments have in common read already: `^([A-Za-z_]\w*)\s*=\s*`.
class Line {
public:
    explicit Line(std::string_view whole)
        : text(whole),
          hasLineBreak(whole.find('\n') != whole.npos || whole.find('\r') != whole.npos),
          lastBreak(hasLineBreak ? whole.find_last_of("\n\r") : whole.npos) {
        Scanner scanner{text};
        if (!scanner.name(target)) {
            return;
        }
        scanner.spaces();
        isAssignment = scanner.literal("=");
        if (isAssignment) {
            afterEquals = scanner.position();
            scanner.spaces();
            value = scanner.position();
        }
    }

    Scanner scannerAt(std::size_t position) const {
        Scanner scanner{text};
        scanner.moveTo(position);
        return scanner;
    }

    Obstacle obstacleFrom(std::size_t position) const {
        if (!hasLineBreak) {
            return {text.size(), text.size()};
        }
        const std::size_t begin = std::min(text.find_first_of("\n\r", position), text.size());
        Scanner scanner = scannerAt(begin);
        scanner.spaces();
        return {begin, scanner.position()};
    }

    /// `\s{minimum,}(.+)$` from `position` on. The blanks go to `\s` as far as they can, so the
    /// group begins at the first other character; if there is none, with the last blank.
    bool spacesAndRest(std::size_t position, std::size_t minimum, std::string_view& group) const {
        Scanner scanner = scannerAt(position);
        scanner.spaces();
        std::size_t begin = scanner.position();
        if (begin == text.size() && begin > 0) {
            --begin;
        }
        if (begin < position + minimum || begin >= text.size()) {
            return false;
        }
        group = text.substr(begin);
        return !hasLineBreak || lastBreak < begin;
    }

    /// `\s*(.+)\s+` from `low` up to `end`, where the character before `end` is a blank and the
    /// first other one from `low` on stands at `first`, before the obstacle. The group begins there
    /// and takes all but that last blank, or stops at a line break if only blanks follow. When
    /// `first` is `end`, one of the blanks is the group: the last one that leaves another.
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
    const bool hasLineBreak;
    const std::size_t lastBreak;
    std::string_view target;
    bool isAssignment = false;
    std::size_t afterEquals = 0;
    std::size_t value = 0;  // past the blanks behind the equals sign
};

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool matchIntegerParameter(const Line& line, Groups& groups) {
    Scanner scanner{line.text};
    return scanner.literal("param") && scanner.someSpaces() && scanner.name(groups[0]) &&
           isOneOf(groups[0], {"int", "boolean", "character", "string"}) && scanner.someSpaces() &&
           scanner.name(groups[1]) && scanner.atEnd();
}

bool matchDoubleParameter(const Line& line, Groups& groups) {
    Scanner scanner{line.text};
    std::string_view type;
    return scanner.literal("param") && scanner.someSpaces() && scanner.name(type) &&
           type == "double" && scanner.someSpaces() && scanner.name(groups[0]) && scanner.atEnd();
}

bool matchArgument(const Line& line, Groups& groups) {
    Scanner scanner{line.text};
    if (!scanner.literal("arg ")) {
        return false;
    }
    groups[0] = line.text.substr(scanner.position());
    return true;
}

/// `call\s+([A-Za-z_]\w*),\s*([0-9]+)$`
bool callOf(Scanner& line, std::string_view& callee, std::string_view& count) {
    if (!line.literal("call") || !line.someSpaces() || !line.name(callee) || !line.literal(",")) {
        return false;
    }
    line.spaces();
    return line.numberAtEnd(count);
}

bool matchCallWithResult(const Line& line, Groups& groups) {
    groups[0] = line.target;
    Scanner scanner = line.scannerAt(line.value);
    return callOf(scanner, groups[1], groups[2]);
}

bool matchCall(const Line& line, Groups& groups) {
    Scanner scanner{line.text};
    return callOf(scanner, groups[0], groups[1]);
}

/// Finds `goto\s+B([0-9]+)$` from the line's end: sets the group and where it begins.
bool gotoAtEnd(std::string_view text, std::size_t& begin, std::string_view& number) {
    std::size_t at = text.size();
    while (at > 0 && isDigit(text[at - 1])) {
        --at;
    }
    number = text.substr(at);
    if (number.empty() || at == 0 || text[at - 1] != 'B') {
        return false;
    }
    const std::size_t spacesEnd = --at;
    while (at > 0 && isSpace(text[at - 1])) {
        --at;
    }
    constexpr std::string_view word = "goto";
    if (at == spacesEnd || !text.substr(0, at).ends_with(word)) {
        return false;
    }
    begin = at - word.size();
    return true;
}

bool matchBranch(const Line& line, Groups& groups) {
    const std::string_view text = line.text;
    Scanner scanner{text};
    std::size_t end = 0;
    if (!scanner.literal("if") || !gotoAtEnd(text, end, groups[1])) {
        return false;
    }
    const std::size_t low = scanner.position() + 1;
    if (!scanner.someSpaces() || end <= low || !isSpace(text[end - 1])) {
        return false;
    }
    const std::size_t first = scanner.position();
    return line.greedyUpTo(low, first, end, line.obstacleFrom(first), groups[0]);
}

bool matchJump(const Line& line, Groups& groups) {
    Scanner scanner{line.text};
    return scanner.literal("goto") && scanner.someSpaces() && scanner.literal("B") &&
           scanner.numberAtEnd(groups[0]);
}

bool matchReturn(const Line& line, Groups& /*groups*/) {
    return line.text == "return";
}

bool matchReturnValue(const Line& line, Groups& groups) {
    Scanner scanner{line.text};
    if (!scanner.literal("return ")) {
        return false;
    }
    groups[0] = line.text.substr(scanner.position());
    return true;
}

/// `(word)\s+(.+)$` for one of some words.
bool conversionOf(const Line& line, std::initializer_list<std::string_view> words,
                  std::string_view& word, std::string_view& operand) {
    Scanner scanner = line.scannerAt(line.value);
    return scanner.name(word) && isOneOf(word, words) &&
           line.spacesAndRest(scanner.position(), 1, operand);
}

bool matchConversion(const Line& line, Groups& groups) {
    groups[0] = line.target;
    return conversionOf(line,
                        {"inttostring", "chartostring", "booltostring", "inttochar", "chartoint"},
                        groups[1], groups[2]);
}

bool matchIntToDouble(const Line& line, Groups& groups) {
    groups[0] = line.target;
    std::string_view word;
    return conversionOf(line, {"inttodouble"}, word, groups[1]);
}

bool matchDoubleToString(const Line& line, Groups& groups) {
    groups[0] = line.target;
    std::string_view word;
    return conversionOf(line, {"doubletostring"}, word, groups[1]);
}

/// The operator of a binary operation whose last character stands at `last`, with a blank on both
/// sides and not before `low`; empty if there is none.
std::string_view operatorEndingAt(std::string_view text, std::size_t last, std::size_t low) {
    if (!isOperatorCharacter(text[last]) || !isSpace(text[last + 1])) {
        return {};
    }
    const std::size_t size = isSpace(text[last - 1]) ? 1 : 2;
    const std::size_t begin = last + 1 - size;
    if (begin <= low || !isSpace(text[begin - 1])) {
        return {};
    }
    const std::string_view candidate = text.substr(begin, size);
    const bool isOperator =
        isOneOf(candidate, {"+", "-", "*", "/", "<", ">", "==", "!=", "<=", ">=", "&&", "||"});
    return isOperator ? candidate : std::string_view{};
}

// The left operand takes as much as it can, so the line is split at its last operator that has
// blanks on both sides and something behind it.
bool matchBinaryOperation(const Line& line, Groups& groups) {
    const std::string_view text = line.text;
    const std::size_t low = line.afterEquals;
    const Obstacle obstacle = line.obstacleFrom(line.value);
    groups[0] = line.target;
    for (std::size_t last = text.size() - 1; last-- > low + 1;) {
        groups[2] = operatorEndingAt(text, last, low);
        if (!groups[2].empty() && line.spacesAndRest(last + 1, 1, groups[3]) &&
            line.greedyUpTo(low, line.value, last + 1 - groups[2].size(), obstacle, groups[1])) {
            return true;
        }
    }
    return false;
}

bool matchUnaryOperation(const Line& line, Groups& groups) {
    groups[0] = line.target;
    groups[1] = line.text.substr(line.value, 1);
    return line.spacesAndRest(line.value + 1, 0, groups[2]);
}

// The index takes as much as it can, so the element ends at the last bracket that is followed by
// an equals sign.
bool matchElementStore(const Line& line, Groups& groups) {
    Scanner scanner = line.scannerAt(line.target.size());
    scanner.spaces();
    if (line.target.empty() || !scanner.literal("[")) {
        return false;
    }
    const std::string_view text = line.text;
    const std::size_t index = scanner.position();
    for (std::size_t close = text.rfind(']', line.obstacleFrom(index).begin);
         close != std::string_view::npos && close > index; close = text.rfind(']', close - 1)) {
        groups[0] = text.substr(0, close + 1);
        scanner.moveTo(close + 1);
        scanner.spaces();
        if (scanner.literal("=") && line.spacesAndRest(scanner.position(), 0, groups[1])) {
            return true;
        }
    }
    return false;
}

bool matchCopy(const Line& line, Groups& groups) {
    groups[0] = line.target;
    return line.spacesAndRest(line.afterEquals, 0, groups[1]);
}

/// What has to stand at the beginning of a form, so that most forms need not be tried.
enum class Lead : std::uint8_t { Line, Value, Anything };

struct Form {
    IRFormPattern definition;
    Lead lead;
    std::string_view characters;  // one of which the line or the assigned value begins with
    bool (*match)(const Line&, Groups&);
};

// Reordering the rows changes the language.
constexpr std::array<Form, 16> forms = {{
    {{IRForm::IntegerParameter, R"(^param\s+(int|boolean|character|string)\s+([A-Za-z_]\w*)$)"},
     Lead::Line,
     "p",
     matchIntegerParameter},
    {{IRForm::DoubleParameter, R"(^param\s+double\s+([A-Za-z_]\w*)$)"},
     Lead::Line,
     "p",
     matchDoubleParameter},
    {{IRForm::Argument, R"(^arg ([\s\S]*)$)"}, Lead::Line, "a", matchArgument},
    {{IRForm::CallWithResult, R"(^([A-Za-z_]\w*)\s*=\s*call\s+([A-Za-z_]\w*),\s*([0-9]+)$)"},
     Lead::Value,
     "c",
     matchCallWithResult},
    {{IRForm::Call, R"(^call\s+([A-Za-z_]\w*),\s*([0-9]+)$)"}, Lead::Line, "c", matchCall},
    {{IRForm::Branch, R"(^if\s+(.+)\s+goto\s+B([0-9]+)$)"}, Lead::Line, "i", matchBranch},
    {{IRForm::Jump, R"(^goto\s+B([0-9]+)$)"}, Lead::Line, "g", matchJump},
    {{IRForm::Return, R"(^return$)"}, Lead::Line, "r", matchReturn},
    {{IRForm::ReturnValue, R"(^return ([\s\S]*)$)"}, Lead::Line, "r", matchReturnValue},
    {{IRForm::Conversion,
      R"(^([A-Za-z_]\w*)\s*=\s*(inttostring|chartostring|booltostring|inttochar|chartoint)\s+(.+)$)"},
     Lead::Value,
     "icb",
     matchConversion},
    {{IRForm::IntToDouble, R"(^([A-Za-z_]\w*)\s*=\s*inttodouble\s+(.+)$)"},
     Lead::Value,
     "i",
     matchIntToDouble},
    {{IRForm::DoubleToString, R"(^([A-Za-z_]\w*)\s*=\s*doubletostring\s+(.+)$)"},
     Lead::Value,
     "d",
     matchDoubleToString},
    {{IRForm::BinaryOperation,
      R"(^([A-Za-z_]\w*)\s*=\s*(.+)\s+(\|\||&&|==|!=|<=|>=|<|>|\+|-|\*|/)\s+(.+)$)"},
     Lead::Value,
     "",
     matchBinaryOperation},
    {{IRForm::UnaryOperation, R"(^([A-Za-z_]\w*)\s*=\s*(!|-|\+)\s*(.+)$)"},
     Lead::Value,
     "!-+",
     matchUnaryOperation},
    {{IRForm::ElementStore, R"(^([A-Za-z_]\w*\s*\[.+\])\s*=\s*(.+)$)"},
     Lead::Anything,
     "",
     matchElementStore},
    {{IRForm::Copy, R"(^([A-Za-z_]\w*)\s*=\s*(.+)$)"}, Lead::Value, "", matchCopy},
}};

}  // namespace

const std::array<IRFormPattern, 16>& irFormPatterns() {
    static const auto patterns = [] {
        std::array<IRFormPattern, 16> result{};
        std::transform(forms.begin(), forms.end(), result.begin(),
                       [](const Form& form) { return form.definition; });
        return result;
    }();
    return patterns;
}

namespace {

/// A set of forms: bit i stands for row i.
using FormSet = std::uint16_t;
using FormsByCharacter = std::array<FormSet, 256>;

constexpr FormSet formsWithLead(bool (*isWanted)(Lead)) {
    FormSet wanted = 0;
    for (std::size_t row = 0; row < forms.size(); ++row) {
        if (isWanted(forms[row].lead)) {
            wanted = static_cast<FormSet>(wanted | 1U << row);
        }
    }
    return wanted;
}

/// The forms that are possible for each character at their lead, and all forms of other leads.
constexpr FormsByCharacter formsByCharacter(Lead lead) {
    FormsByCharacter result{};
    for (std::size_t character = 0; character < result.size(); ++character) {
        for (std::size_t row = 0; row < forms.size(); ++row) {
            const std::string_view accepted = forms[row].characters;
            if (forms[row].lead != lead || accepted.empty() ||
                accepted.find(static_cast<char>(character)) != accepted.npos) {
                result[character] = static_cast<FormSet>(result[character] | 1U << row);
            }
        }
    }
    return result;
}

constexpr FormsByCharacter formsByLine = formsByCharacter(Lead::Line);
constexpr FormsByCharacter formsByValue = formsByCharacter(Lead::Value);
constexpr FormSet formsOfNoAssignment =
    formsWithLead([](Lead lead) { return lead != Lead::Value; });

/// The forms that are possible by the first character of the line and of the assigned value.
FormSet possibleForms(const Line& line) {
    const auto characterAt = [&line](std::size_t at) -> std::size_t {
        return at < line.text.size() ? static_cast<unsigned char>(line.text[at]) : 0;
    };
    const FormSet byValue =
        line.isAssignment ? formsByValue[characterAt(line.value)] : formsOfNoAssignment;
    return formsByLine[characterAt(0)] & byValue;
}

}  // namespace

IRLine recognise(std::string_view text) {
    const Line line{text};
    for (unsigned possible = possibleForms(line); possible != 0; possible &= possible - 1) {
        const Form& form = forms[static_cast<std::size_t>(std::countr_zero(possible))];
        Groups groups{};
        if (form.match(line, groups)) {
            return {form.definition.form, groups};
        }
    }
    return {};
}
