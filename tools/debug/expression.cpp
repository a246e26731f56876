// Expressions and assignments that users write in a session. Comes in: a text, and the frame that
// its names belong to. Goes out: its value, or the slots that it changes. `total + a[i]` becomes
//
//     void main() {
//     }
//     void krel_expression() {
//         int total = 0;
//         int a[5];
//         int i = 0;
//         print(total + a[i]);
//     }
//
// which is run up to the last statement, gets the values of the frame, and is run to its end. If
// functions are called, the program itself stands before it.

#include "tools/debug/expression.hpp"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "parser/parser.hpp"
#include "shared/ast/node.hpp"
#include "tools/debug/values.hpp"
#include "tools/machine/translator.hpp"

namespace krel::Debug {

namespace {

using Execution::CallFrame;
using Execution::Machine;
using Execution::Stop;
using Execution::Variable;
namespace Tags = Execution::Tags;

/// A call of the program's functions may take so many steps: about a second.
constexpr std::uint64_t mostSteps = 50'000'000;

/// Room for the arrays of a frame and for calls. Only what is used takes memory.
constexpr std::size_t stackSize = std::size_t{64} << 20;

struct Word {
    int code;
    std::string text;
};

/// The words of an expression, without what is between them.
std::vector<Word> wordsOf(std::string_view text) {
    std::vector<Word> words;
    const std::string source{text};
    for (const FrontEnd::Token& token : FrontEnd::tokensOf(source)) {
        const std::size_t length = token.range.end - token.range.begin;
        if (token.kind == FrontEnd::Token::Kind::IllegalCharacter ||
            token.kind == FrontEnd::Token::Kind::Comment) {
            throw BadExpression("`" + source.substr(token.range.begin, length) +
                                "` cannot stand in an expression");
        }
        if (token.kind == FrontEnd::Token::Kind::Word) {
            words.push_back({token.code, source.substr(token.range.begin, length)});
        }
    }
    return words;
}

bool isIn(int code, std::initializer_list<int> codes) {
    return std::ranges::find(codes, code) != codes.end();
}

bool isChangeSign(const Word& word) {
    return isIn(word.code, {T_ASSIGN, T_PLUS_ASSIGN, T_MINUS_ASSIGN, T_INCREMENT, T_DECREMENT});
}

bool isCall(const std::vector<Word>& words, std::size_t index) {
    return words[index].code == T_ID && index + 1 < words.size() &&
           words[index + 1].code == T_LPAREN;
}

bool hasCall(const std::vector<Word>& words) {
    for (std::size_t index = 0; index < words.size(); ++index) {
        if (isCall(words, index)) {
            return true;
        }
    }
    return false;
}

/// Whether the outermost operator compares or joins truths. Those bind loosest.
bool isTruth(const std::vector<Word>& words) {
    int depth = 0;
    for (const Word& word : words) {
        depth += isIn(word.code, {T_LPAREN, T_LBRACKET}) ? 1 : 0;
        depth -= isIn(word.code, {T_RPAREN, T_RBRACKET}) ? 1 : 0;
        if (depth == 0 && isIn(word.code, {T_LESS, T_GREATER, T_LESS_EQUAL, T_GREATER_EQUAL,
                                           T_EQUAL, T_NOT_EQUAL, T_AND, T_OR})) {
            return true;
        }
    }
    return false;
}

/// One expression or assignment alone, so that nothing else comes into the function around it.
void checkShape(const std::vector<Word>& words, std::string_view text) {
    int depth = 0;
    bool isSound = !words.empty();
    for (const Word& word : words) {
        depth += isIn(word.code, {T_LPAREN, T_LBRACKET}) ? 1 : 0;
        depth -= isIn(word.code, {T_RPAREN, T_RBRACKET}) ? 1 : 0;
        isSound = isSound && depth >= 0 && (depth > 0 || word.code != T_COMMA) &&
                  !isIn(word.code, {T_SEMICOLON, T_LBRACE, T_RBRACE});
    }
    if (!isSound || depth != 0) {
        throw BadExpression("`" + std::string{text} + "` is no expression");
    }
}

/// What a variable of a type can be declared with.
std::string_view anyValueOf(std::string_view type) {
    static constexpr std::pair<std::string_view, std::string_view> values[] = {
        {"double", "0.5"}, {"boolean", "false"}, {"character", "'a'"}, {"string", "\"\""}};
    for (const auto& [name, value] : values) {
        if (name == type) {
            return value;
        }
    }
    return "0";
}

std::string declarationOf(const Variable& variable) {
    const bool isTyped = anyValueOf(variable.type) != "0";
    const std::string type = isTyped ? variable.type : "int";
    if (variable.isArray) {
        return type + " " + variable.name + "[" + std::to_string(variable.length) + "];\n";
    }
    return type + " " + variable.name + " = " + std::string{anyValueOf(type)} + ";\n";
}

/// The type of what a print statement prints, by the conversion that the compiler has put before
/// it.
std::string printedType(const Node& print) {
    static const std::pair<Name, Name> types[] = {{NodeKind::IntToString, TypeName::Int},
                                                  {NodeKind::DoubleToString, TypeName::Double},
                                                  {NodeKind::BoolToString, TypeName::Boolean},
                                                  {NodeKind::CharToString, TypeName::Character}};
    const Node& value = *print.getChildren()[0]->getChildren()[0];
    for (const auto& [conversion, type] : types) {
        if (value.kindName() == conversion) {
            return type.text();
        }
    }
    return TypeName::String.text();
}

/// The last statement of the last function.
const Node& lastStatement(const FrontEnd::Compilation& compilation) {
    const auto lastOf = [](const Node& node) -> const Node& {
        return *node.getChildren()[node.getChildren().size() - 1];
    };
    const Node& function = lastOf(*compilation.tree()->getChildren()[0]);
    return lastOf(*lastOf(function).getChildren()[0]);
}

/// Keeps what was printed last.
class LastText final : public Execution::Sink {
public:
    void print(std::uint64_t /*position*/, std::string_view printed) override { text = printed; }
    std::string text;
};

}  // namespace

/// The text that the compiler gets.
class Expression::Source {
public:
    /// An element or variable of the frame that the expression names.
    struct Use {
        const Variable* variable;
        std::int32_t index = 0;               // of an element
        const Variable* indexName = nullptr;  // whose value is the index
    };

    Source(const Program& program, std::size_t function, std::string_view text, Purpose purpose)
        : words(wordsOf(text)) {
        checkShape(words, text);
        if (purpose == Purpose::Condition && hasCall(words)) {
            throw BadExpression("a condition or comparison cannot call functions");
        }
        findUses(program, function);
        while (program.compilation->text().find(name) != std::string::npos) {
            name += "_";
        }
        all = hasCall(words) ? program.compilation->text() + "\n" : "void main() {\n}\n";
        all += "void " + name + "() {\n";
        std::vector<const Variable*> declared;
        for (const Use& use : uses) {
            if (std::ranges::find(declared, use.variable) == declared.end()) {
                declared.push_back(use.variable);
                all += declarationOf(*use.variable);
            }
        }
        statement = all.size();
        all += statementOf(text, purpose) + "\n}\n";
    }

    std::string name = "krel_expression";  // of the function
    std::vector<Word> words;
    std::vector<Use> uses;
    std::string all;
    std::size_t statement = 0;  // where it begins

private:
    void findUses(const Program& program, std::size_t function) {
        const auto variableNamed = [&](const std::string& text) {
            const Variable* const variable = program.variable(function, text);
            if (variable == nullptr) {
                throw BadExpression("there is no variable `" + text + "` in " +
                                    program.code.functions[function].name);
            }
            return variable;
        };
        for (std::size_t index = 0; index < words.size(); ++index) {
            if (words[index].code != T_ID) {
                continue;
            }
            if (isCall(words, index)) {
                if (!program.functionNamed(words[index].text)) {
                    throw BadExpression("there is no function `" + words[index].text + "`");
                }
                continue;
            }
            Use use{variableNamed(words[index].text)};
            if (index + 2 < words.size() && words[index + 1].code == T_LBRACKET) {
                const std::string& text = words[index + 2].text;
                if (words[index + 2].code == T_ID) {
                    use.indexName = variableNamed(text);
                } else {
                    std::from_chars(text.data(), text.data() + text.size(), use.index);
                }
            }
            uses.push_back(use);
        }
    }

    static std::string statementOf(std::string_view text, Purpose purpose) {
        const std::string expression{text};
        return purpose == Purpose::Value       ? "print(" + expression + ");"
               : purpose == Purpose::Condition ? "if (" + expression + ") { print(\"true\"); }"
                                               : expression + ";";
    }
};

/// The compiled text, and a machine that stands before its last statement.
class Expression::Run {
public:
    Run(const Program& itsProgram, std::size_t itsFunction, Source itsSource, Purpose itsPurpose,
        Execution::RuleSet allowed)
        : program(itsProgram),
          function(itsFunction),
          source(std::move(itsSource)),
          purpose(itsPurpose),
          compilation(compiled()),
          code(translated()),
          machine(code, {true, allowed, stackSize}, printed) {
        findLines();
        for (const std::size_t line : {first, last}) {
            machine.watch(line, true);
        }
        if (machine.run().reason != Stop::Reason::Watched) {
            throw BadExpression("there is no room for the expression's variables");
        }
        begin = machine.snapshot();
        for (std::size_t index = 0; index < code.constants.size(); ++index) {
            if (code.constantTags[index] == Tags::text) {
                literals.emplace(textIn(code.constants[index]), code.constants[index]);
            }
        }
    }

    Result evaluate(const Machine& from, const CallFrame& frame) {
        execute(from, frame);
        if (purpose == Purpose::Condition) {
            return {printed.text.empty() ? "false" : "true", TypeName::Boolean.text()};
        }
        return {printed.text, printedType(lastStatement(*compilation))};
    }

    std::vector<Timeline::Edit> changes(const Machine& from, const CallFrame& frame) {
        execute(from, frame);
        std::vector<Timeline::Edit> edits;
        const CallFrame here = machine.call(0);
        for (const Source::Use& use : source.uses) {
            const auto [theirs, ours] = slotsOf(use, from, frame);
            if (!theirs) {
                continue;
            }
            const auto before = enter(from, from.value(frame, *theirs), from.tag(frame, *theirs));
            const std::uint64_t bits = machine.value(here, ours);
            const Execution::Tag tag = machine.tag(here, ours);
            if (bits != before || tag != from.tag(frame, *theirs)) {
                edits.push_back(editOf(*theirs, bits, tag));
            }
        }
        return edits;
    }

private:
    static const char* textIn(std::uint64_t address) {
        return reinterpret_cast<const char*>(address);
    }

    std::unique_ptr<FrontEnd::Compilation> compiled() const {
        FrontEnd::Request request;
        request.sources = true;
        auto tried = FrontEnd::compile(source.all, "expression.krl", request);
        if (tried->outcome() == FrontEnd::Outcome::Complete) {
            return tried;
        }
        const bool isSyntax = tried->outcome() == FrontEnd::Outcome::SyntaxFaults;
        std::string why = tried->failure();
        if (!tried->faults().empty()) {
            why = tried->faults().front().message;
        }
        throw BadExpression(isSyntax || why.empty() ? "this is no expression" : why);
    }

    Execution::Code translated() const {
        Execution::Wanted wanted;
        wanted.stops = true;
        wanted.entry = source.name;
        return translate(*compilation, wanted);
    }

    void findLines() {
        const Execution::Function& around = code.functions.back();
        last = first = around.lineEnd - 1;
        while (first > around.firstLine &&
               compilation->irLines()[first - 1].source.begin >= source.statement) {
            --first;
        }
    }

    void execute(const Machine& from, const CallFrame& frame) {
        if (frame.function != function) {
            throw BadExpression("the names are those of another function");
        }
        machine.restore(*begin);
        printed.text.clear();
        made.clear();
        const CallFrame here = machine.call(0);
        for (const Source::Use& use : source.uses) {
            take(use, from, frame, here);
        }
        if (first == last) {
            return;
        }
        const Stop stop = machine.run(machine.stepsDone() + mostSteps);
        switch (stop.reason) {
            case Stop::Reason::Watched:
                return;
            case Stop::Reason::Faulted:
                throw BadExpression(machine.fault().message);
            case Stop::Reason::Steps:
                throw BadExpression("the call takes too long");
            case Stop::Reason::Ended:
                throw BadExpression("the call has ended the program");
            case Stop::Reason::Foreign:
                throw BadExpression("the function `" + std::string{stop.name} +
                                    "` is not in the program");
            case Stop::Reason::Trapped:
                break;
        }
        throw BadExpression("the call has failed");
    }

    /// The places of what is named, there and here; nothing when it lies outside of its array.
    std::pair<std::optional<std::int32_t>, std::int32_t> slotsOf(const Source::Use& use,
                                                                 const Machine& from,
                                                                 const CallFrame& frame) const {
        const Variable* const here = variableHere(use.variable->name);
        std::int64_t index = use.index;
        if (use.indexName != nullptr) {
            index = static_cast<std::int64_t>(from.value(frame, use.indexName->slot));
        }
        if (index < 0 || index >= use.variable->length || here == nullptr) {
            return {std::nullopt, 0};
        }
        return {use.variable->slot + static_cast<std::int32_t>(index),
                here->slot + static_cast<std::int32_t>(index)};
    }

    void take(const Source::Use& use, const Machine& from, const CallFrame& frame,
              const CallFrame& here) {
        const auto [theirs, ours] = slotsOf(use, from, frame);
        if (theirs) {
            const Execution::Tag tag = from.tag(frame, *theirs);
            machine.setValue(here, ours, enter(from, from.value(frame, *theirs), tag), tag);
        }
    }

    const Variable* variableHere(const std::string& name) const {
        const auto& variables = code.functions.back().variables;
        const auto found = std::ranges::find(variables, name, &Variable::name);
        return found == variables.end() ? nullptr : &*found;
    }

    /// Bits of the program as bits of the expression. Equal literals have one address.
    std::uint64_t enter(const Machine& from, std::uint64_t bits, Execution::Tag tag) {
        if ((tag & Tags::text) == 0 || !program.code.ownsText(bits)) {
            return bits;
        }
        if (const auto known = literals.find(textIn(bits)); known != literals.end()) {
            return known->second;
        }
        const auto [copy, isNew] = made.emplace(bits, 0);
        if (isNew) {
            copy->second = machine.makeText(from.textAt(bits).value_or(""));
        }
        return copy->second;
    }

    /// And the other way round.
    Timeline::Edit editOf(std::int32_t slot, std::uint64_t bits, Execution::Tag tag) const {
        Timeline::Edit edit;
        edit.slot = slot;
        edit.bits = bits;
        edit.tag = tag;
        if ((tag & Tags::text) == 0) {
            return edit;
        }
        if (code.ownsText(bits)) {
            const std::string_view literal = textIn(bits);
            for (std::size_t index = 0; index < program.code.constants.size(); ++index) {
                if (program.code.constantTags[index] == Tags::text &&
                    textIn(program.code.constants[index]) == literal) {
                    edit.bits = program.code.constants[index];
                    return edit;
                }
            }
        }
        edit.text = machine.textAt(bits).value_or("");
        return edit;
    }

    const Program& program;
    const std::size_t function;
    const Source source;
    const Purpose purpose;
    const std::unique_ptr<FrontEnd::Compilation> compilation;
    const Execution::Code code;
    LastText printed;
    Machine machine;
    std::size_t first = 0;  // line of the last statement
    std::size_t last = 0;   // the line behind it
    std::shared_ptr<const Execution::Snapshot> begin;
    std::unordered_map<std::string_view, std::uint64_t> literals;  // as they are written
    std::map<std::uint64_t, std::uint64_t> made;  // texts that are no literals of the expression
};

Expression::Expression(const Program& itsProgram, std::size_t function, std::string_view text,
                       Purpose itsPurpose, Execution::RuleSet allowed) {
    const bool isCondition =
        itsPurpose == Purpose::Value && isTruth(wordsOf(text)) && !isChange(text);
    const Purpose purpose = isCondition ? Purpose::Condition : itsPurpose;
    run = std::make_unique<Run>(itsProgram, function, Source{itsProgram, function, text, purpose},
                                purpose, allowed);
}

Expression::~Expression() = default;

Expression::Result Expression::evaluate(const Machine& machine, const CallFrame& frame) {
    return run->evaluate(machine, frame);
}

bool Expression::holds(const Machine& machine, const CallFrame& frame) {
    return run->evaluate(machine, frame).text == "true";
}

std::vector<Timeline::Edit> Expression::changes(const Machine& machine, const CallFrame& frame) {
    return run->changes(machine, frame);
}

bool Expression::isChange(std::string_view text) {
    return std::ranges::any_of(wordsOf(text), isChangeSign);
}

bool Expression::callsFunctions(std::string_view text) {
    return hasCall(wordsOf(text));
}

}  // namespace krel::Debug
