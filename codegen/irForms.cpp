// The recogniser of lines. The patterns below define the forms; next to each stands the function
// that finds the same match by scanning. Matching them with a regular-expression engine would cost
// microseconds a line and a stack frame a character. What the functions have to reproduce of an
// engine is greed: of several ways to match, a group takes as much as it can, from left to right.

#include "codegen/irForms.hpp"

#include <algorithm>
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

    /// `\s{minimum,}(.+)$`. The blanks go to `\s` as far as they can, so the group begins at the
    /// first other character; if there is none, with the last blank.
    bool spacesAndRest(std::size_t minimum, std::string_view& group) {
        const std::size_t first = at + minimum;
        spaces();
        if (at == line.size() && at > 0) {
            --at;
        }
        if (at < first || at >= line.size()) {
            return false;
        }
        group = line.substr(at);
        return group.find_first_of("\n\r") == std::string_view::npos;
    }

    /// `(.+)\s+` before `end`, where the character before `end` is a blank and the blanks before
    /// the position may go to a `\s` that leaves at least those before `low`. The group takes all
    /// but that last blank, or stops at a line break if only blanks follow. When there is nothing
    /// but blanks, one of them is the group: the last that leaves one more.
    bool greedyUpTo(std::size_t low, std::size_t end, std::string_view& group) const {
        if (at < end) {
            const std::string_view candidate = line.substr(at, end - 1 - at);
            const std::size_t stop = std::min(candidate.find_first_of("\n\r"), candidate.size());
            group = candidate.substr(0, stop);
            return std::all_of(candidate.begin() + stop, candidate.end(), isSpace);
        }
        for (std::size_t begin = end - 1; begin > low; --begin) {
            group = line.substr(begin - 1, 1);
            if (group != "\n" && group != "\r") {
                return true;
            }
        }
        return false;
    }

    void moveTo(std::size_t position) { at = position; }
    std::string_view text() const { return line; }

private:
    std::string_view line;
    std::size_t at = 0;
};

/// `^([A-Za-z_]\w*)\s*=`
bool assignmentTo(Scanner& line, std::string_view& group) {
    if (!line.name(group)) {
        return false;
    }
    line.spaces();
    return line.literal("=");
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool matchIntegerParameter(Scanner& line, Groups& groups) {
    return line.literal("param") && line.someSpaces() && line.name(groups[0]) &&
           isOneOf(groups[0], {"int", "boolean", "character", "string"}) && line.someSpaces() &&
           line.name(groups[1]) && line.atEnd();
}

bool matchDoubleParameter(Scanner& line, Groups& groups) {
    std::string_view type;
    return line.literal("param") && line.someSpaces() && line.name(type) && type == "double" &&
           line.someSpaces() && line.name(groups[0]) && line.atEnd();
}

bool matchArgument(Scanner& line, Groups& groups) {
    if (!line.literal("arg ")) {
        return false;
    }
    groups[0] = line.text().substr(line.position());
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

bool matchCallWithResult(Scanner& line, Groups& groups) {
    if (!assignmentTo(line, groups[0])) {
        return false;
    }
    line.spaces();
    return callOf(line, groups[1], groups[2]);
}

bool matchCall(Scanner& line, Groups& groups) {
    return callOf(line, groups[0], groups[1]);
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

bool matchBranch(Scanner& line, Groups& groups) {
    std::size_t end = 0;
    if (!line.literal("if") || !gotoAtEnd(line.text(), end, groups[1])) {
        return false;
    }
    const std::size_t low = line.position() + 1;
    return line.someSpaces() && end > low && isSpace(line.text()[end - 1]) &&
           line.greedyUpTo(low, end, groups[0]);
}

bool matchJump(Scanner& line, Groups& groups) {
    return line.literal("goto") && line.someSpaces() && line.literal("B") &&
           line.numberAtEnd(groups[0]);
}

bool matchReturn(Scanner& line, Groups& /*groups*/) {
    return line.text() == "return";
}

bool matchReturnValue(Scanner& line, Groups& groups) {
    if (!line.literal("return ")) {
        return false;
    }
    groups[0] = line.text().substr(line.position());
    return true;
}

/// `^([A-Za-z_]\w*)\s*=\s*(word)\s+(.+)$` for one of some words.
bool conversionOf(Scanner& line, std::initializer_list<std::string_view> words,
                  std::string_view& target, std::string_view& word, std::string_view& operand) {
    if (!assignmentTo(line, target)) {
        return false;
    }
    line.spaces();
    return line.name(word) && isOneOf(word, words) && line.spacesAndRest(1, operand);
}

bool matchConversion(Scanner& line, Groups& groups) {
    return conversionOf(line,
                        {"inttostring", "chartostring", "booltostring", "inttochar", "chartoint"},
                        groups[0], groups[1], groups[2]);
}

bool matchIntToDouble(Scanner& line, Groups& groups) {
    std::string_view word;
    return conversionOf(line, {"inttodouble"}, groups[0], word, groups[1]);
}

bool matchDoubleToString(Scanner& line, Groups& groups) {
    std::string_view word;
    return conversionOf(line, {"doubletostring"}, groups[0], word, groups[1]);
}

/// The operator of a binary operation that stands at `begin`, with a blank behind it; empty if
/// there is none.
std::string_view operatorBeforeSpace(std::string_view text, std::size_t begin) {
    for (const std::size_t size : {std::size_t{1}, std::size_t{2}}) {
        const std::string_view candidate = text.substr(begin, size);
        if (begin + size < text.size() && isSpace(text[begin + size])) {
            const bool isOperator = isOneOf(
                candidate, {"||", "&&", "==", "!=", "<=", ">=", "<", ">", "+", "-", "*", "/"});
            return isOperator ? candidate : std::string_view{};
        }
    }
    return {};
}

// The left operand takes as much as it can, so the line is split at its last operator that has
// blanks on both sides and something behind it.
bool matchBinaryOperation(Scanner& line, Groups& groups) {
    if (!assignmentTo(line, groups[0])) {
        return false;
    }
    const std::string_view text = line.text();
    const std::size_t low = line.position();
    line.spaces();
    const std::size_t first = line.position();
    for (std::size_t begin = text.size(); begin-- > low + 1;) {
        if (!isSpace(text[begin - 1])) {
            continue;
        }
        groups[2] = operatorBeforeSpace(text, begin);
        if (groups[2].empty()) {
            continue;
        }
        line.moveTo(begin + groups[2].size());
        if (!line.spacesAndRest(1, groups[3])) {
            continue;
        }
        line.moveTo(first);
        if (line.greedyUpTo(low, begin, groups[1])) {
            return true;
        }
    }
    return false;
}

bool matchUnaryOperation(Scanner& line, Groups& groups) {
    if (!assignmentTo(line, groups[0])) {
        return false;
    }
    line.spaces();
    groups[1] = line.text().substr(line.position(), 1);
    if (!isOneOf(groups[1], {"!", "-", "+"})) {
        return false;
    }
    line.moveTo(line.position() + 1);
    return line.spacesAndRest(0, groups[2]);
}

// The index takes as much as it can, so the element ends at the last bracket that is followed by
// an equals sign.
bool matchElementStore(Scanner& line, Groups& groups) {
    std::string_view array;
    if (!line.name(array)) {
        return false;
    }
    line.spaces();
    if (!line.literal("[")) {
        return false;
    }
    const std::string_view text = line.text();
    const std::size_t index = line.position();
    const std::size_t limit = text.find_first_of("\n\r", index);
    for (std::size_t close = text.rfind(']', limit);
         close != std::string_view::npos && close > index; close = text.rfind(']', close - 1)) {
        groups[0] = text.substr(0, close + 1);
        line.moveTo(close + 1);
        line.spaces();
        if (line.literal("=") && line.spacesAndRest(0, groups[1])) {
            return true;
        }
    }
    return false;
}

bool matchCopy(Scanner& line, Groups& groups) {
    return assignmentTo(line, groups[0]) && line.spacesAndRest(0, groups[1]);
}

struct Form {
    IRFormPattern definition;
    char lead;  // what every line of the form begins with; 0 when any name can stand there
    bool (*match)(Scanner&, Groups&);
};

// Reordering the rows changes the language.
constexpr std::array<Form, 16> forms = {{
    {{IRForm::IntegerParameter, R"(^param\s+(int|boolean|character|string)\s+([A-Za-z_]\w*)$)"},
     'p',
     matchIntegerParameter},
    {{IRForm::DoubleParameter, R"(^param\s+double\s+([A-Za-z_]\w*)$)"}, 'p', matchDoubleParameter},
    {{IRForm::Argument, R"(^arg ([\s\S]*)$)"}, 'a', matchArgument},
    {{IRForm::CallWithResult, R"(^([A-Za-z_]\w*)\s*=\s*call\s+([A-Za-z_]\w*),\s*([0-9]+)$)"},
     0,
     matchCallWithResult},
    {{IRForm::Call, R"(^call\s+([A-Za-z_]\w*),\s*([0-9]+)$)"}, 'c', matchCall},
    {{IRForm::Branch, R"(^if\s+(.+)\s+goto\s+B([0-9]+)$)"}, 'i', matchBranch},
    {{IRForm::Jump, R"(^goto\s+B([0-9]+)$)"}, 'g', matchJump},
    {{IRForm::Return, R"(^return$)"}, 'r', matchReturn},
    {{IRForm::ReturnValue, R"(^return ([\s\S]*)$)"}, 'r', matchReturnValue},
    {{IRForm::Conversion,
      R"(^([A-Za-z_]\w*)\s*=\s*(inttostring|chartostring|booltostring|inttochar|chartoint)\s+(.+)$)"},
     0,
     matchConversion},
    {{IRForm::IntToDouble, R"(^([A-Za-z_]\w*)\s*=\s*inttodouble\s+(.+)$)"}, 0, matchIntToDouble},
    {{IRForm::DoubleToString, R"(^([A-Za-z_]\w*)\s*=\s*doubletostring\s+(.+)$)"},
     0,
     matchDoubleToString},
    {{IRForm::BinaryOperation,
      R"(^([A-Za-z_]\w*)\s*=\s*(.+)\s+(\|\||&&|==|!=|<=|>=|<|>|\+|-|\*|/)\s+(.+)$)"},
     0,
     matchBinaryOperation},
    {{IRForm::UnaryOperation, R"(^([A-Za-z_]\w*)\s*=\s*(!|-|\+)\s*(.+)$)"}, 0, matchUnaryOperation},
    {{IRForm::ElementStore, R"(^([A-Za-z_]\w*\s*\[.+\])\s*=\s*(.+)$)"}, 0, matchElementStore},
    {{IRForm::Copy, R"(^([A-Za-z_]\w*)\s*=\s*(.+)$)"}, 0, matchCopy},
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

IRLine recognise(std::string_view line) {
    const char lead = line.empty() ? '\0' : line.front();
    for (const Form& form : forms) {
        if (form.lead != 0 && form.lead != lead) {
            continue;
        }
        Scanner scanner{line};
        Groups groups{};
        if (form.match(scanner, groups)) {
            return {form.definition.form, groups};
        }
    }
    return {};
}
