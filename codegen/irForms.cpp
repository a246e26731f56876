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

/// A line, with what all assignments have in common read already: `^([A-Za-z_]\w*)\s*=\s*`.
struct Line {
    explicit Line(std::string_view whole) : text(whole) {
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

    /// A scanner that stands at the assigned value.
    Scanner atValue() const {
        Scanner scanner{text};
        scanner.moveTo(value);
        return scanner;
    }

    std::string_view text;
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
    Scanner scanner = line.atValue();
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
    Scanner scanner{line.text};
    std::size_t end = 0;
    if (!scanner.literal("if") || !gotoAtEnd(line.text, end, groups[1])) {
        return false;
    }
    const std::size_t low = scanner.position() + 1;
    return scanner.someSpaces() && end > low && isSpace(line.text[end - 1]) &&
           scanner.greedyUpTo(low, end, groups[0]);
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
    Scanner scanner = line.atValue();
    return scanner.name(word) && isOneOf(word, words) && scanner.spacesAndRest(1, operand);
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
    groups[0] = line.target;
    for (std::size_t last = text.size() - 1; last-- > low + 1;) {
        groups[2] = operatorEndingAt(text, last, low);
        if (groups[2].empty()) {
            continue;
        }
        Scanner scanner{text};
        scanner.moveTo(last + 1);
        if (!scanner.spacesAndRest(1, groups[3])) {
            continue;
        }
        scanner.moveTo(line.value);
        if (scanner.greedyUpTo(low, last + 1 - groups[2].size(), groups[1])) {
            return true;
        }
    }
    return false;
}

bool matchUnaryOperation(const Line& line, Groups& groups) {
    groups[0] = line.target;
    groups[1] = line.text.substr(line.value, 1);
    if (!isOneOf(groups[1], {"!", "-", "+"})) {
        return false;
    }
    Scanner scanner{line.text};
    scanner.moveTo(line.value + 1);
    return scanner.spacesAndRest(0, groups[2]);
}

// The index takes as much as it can, so the element ends at the last bracket that is followed by
// an equals sign.
bool matchElementStore(const Line& line, Groups& groups) {
    Scanner scanner{line.text};
    scanner.moveTo(line.target.size());
    scanner.spaces();
    if (line.target.empty() || !scanner.literal("[")) {
        return false;
    }
    const std::string_view text = line.text;
    const std::size_t index = scanner.position();
    const std::size_t limit = text.find_first_of("\n\r", index);
    for (std::size_t close = text.rfind(']', limit);
         close != std::string_view::npos && close > index; close = text.rfind(']', close - 1)) {
        groups[0] = text.substr(0, close + 1);
        scanner.moveTo(close + 1);
        scanner.spaces();
        if (scanner.literal("=") && scanner.spacesAndRest(0, groups[1])) {
            return true;
        }
    }
    return false;
}

bool matchCopy(const Line& line, Groups& groups) {
    groups[0] = line.target;
    Scanner scanner{line.text};
    scanner.moveTo(line.afterEquals);
    return scanner.spacesAndRest(0, groups[1]);
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

/// Whether the line can have the form, by its first character or that of the assigned value.
bool canHave(const Form& form, const Line& line) {
    if (form.lead == Lead::Anything) {
        return true;
    }
    const bool looksAtValue = form.lead == Lead::Value;
    const std::size_t at = looksAtValue ? line.value : 0;
    if (looksAtValue != line.isAssignment && looksAtValue) {
        return false;
    }
    return form.characters.empty() ||
           (at < line.text.size() && form.characters.find(line.text[at]) != std::string_view::npos);
}

}  // namespace

IRLine recognise(std::string_view text) {
    const Line line{text};
    for (const Form& form : forms) {
        Groups groups{};
        if (canHave(form, line) && form.match(line, groups)) {
            return {form.definition.form, groups};
        }
    }
    return {};
}
