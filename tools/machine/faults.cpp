// What a checked run finds. Comes in: a machine that stands at an instruction which it cannot
// execute as it is meant. Goes out: a fault with its words, or the permission to go on.

#include "tools/machine/faults.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>

#include "tools/machine/machine.hpp"

namespace krel::Execution {

namespace {

/// What an operation expects of its operands.
struct Expectation {
    Tag left;
    Tag right;
};

constexpr Expectation expectations[] = {
#define KREL_EXPECTATION(name, left, right) {left, right},
    KREL_OPERATIONS(KREL_EXPECTATION)
#undef KREL_EXPECTATION
};

const Expectation& expectationOf(Operation operation) {
    return expectations[static_cast<std::size_t>(operation)];
}

using enum Operation;

/// How the operation is written that may overflow.
struct Symbol {
    Operation first;
    std::string_view text;
};
constexpr std::array<Symbol, 4> symbols = {
    {{AddSlots, " + "}, {SubtractSlots, " - "}, {MultiplySlots, " * "}, {DivideSlots, " / "}}};

std::string_view symbolOf(Operation operation) {
    const auto number = static_cast<unsigned>(operation);
    const auto* const found = std::ranges::find_if(symbols, [number](const Symbol& symbol) {
        return number - static_cast<unsigned>(symbol.first) < 2;
    });
    return found != symbols.end() ? found->text : " ";
}

std::string quoted(std::string_view name) {
    return "`" + std::string{name} + "`";
}

std::string_view wordFor(Tag tag) {
    return (tag & Tags::text) != 0 ? "a string" : (tag & Tags::real) != 0 ? "a double" : "an int";
}

std::string signedText(std::uint64_t bits) {
    return std::to_string(static_cast<std::int64_t>(bits));
}

bool isCondition(Operation operation) {
    return operation == JumpIf || operation == JumpUnless || operation == Not ||
           operation == NotReal;
}

/// Finds the words for what happens at one instruction.
class Describer {
public:
    Describer(const Machine& itsMachine, const Instruction& itsInstruction)
        : machine(itsMachine),
          code(itsMachine.program()),
          instruction(itsInstruction),
          innermost(itsMachine.call(0)),
          function(code.functions[innermost.function]) {}

    Fault fault(Rule rule) const {
        Fault found;
        found.rule = rule;
        found.line = innermost.line;
        (this->*wordings[static_cast<std::size_t>(rule)])(found);
        return found;
    }

    /// The fault that lies in what a slot holds, where something else is expected.
    Fault faultOf(std::int32_t slot, Tag tag, Tag expected) const {
        Fault found;
        found.line = innermost.line;
        if ((tag & Tags::any) == 0) {
            describeUnset(found, slot, tag);
        } else {
            describeOtherType(found, slot, tag, expected);
        }
        return found;
    }

    /// The same for an element that is loaded.
    Fault faultOfElement() const {
        const Array& array = arrayAt();
        Fault found;
        found.rule = Rule::UnsetValue;
        found.line = innermost.line;
        found.message = "`" + array.name + "[" + signedText(valueOf(instruction.left)) +
                        "]` is read, but nothing has set it";
        found.help = "a new array holds nothing: set its elements first";
        return found;
    }

private:
    using Wording = void (Describer::*)(Fault&) const;
    static const std::array<Wording, ruleCount> wordings;

    const Array& arrayAt() const {
        return code.arrays[static_cast<std::size_t>(instruction.right)];
    }

    std::uint64_t valueOf(std::int32_t slot) const { return machine.value(innermost, slot); }

    /// The right operand of an arithmetic operation.
    std::uint64_t rightValue() const {
        const bool isSlot = expectationOf(instruction.operation).right != 0;
        return isSlot ? valueOf(instruction.right)
                      : code.constants[static_cast<std::size_t>(instruction.right)];
    }

    const Variable* variableAt(std::int32_t slot) const {
        const auto found = std::ranges::find_if(function.variables, [slot](const Variable& each) {
            return slot >= each.slot && slot < each.slot + each.length;
        });
        return found != function.variables.end() ? &*found : nullptr;
    }

    /// The last instruction before this one that has put something into a slot.
    const Instruction* setterOf(std::int32_t slot) const {
        const Instruction* const first = code.instructions.data() + function.entry;
        for (const Instruction* at = &instruction; at-- > first;) {
            const bool sets = (at->operation >= EqualSlots && at->operation <= LoadElement) ||
                              at->operation == Result || at->operation == RealResult;
            if (sets && at->to == slot) {
                return at;
            }
        }
        return nullptr;
    }

    std::string calleeBefore(const Instruction& result) const {
        const Instruction& call = *(&result - 1);
        return call.operation == Operation::Call || call.operation == CallPassing
                   ? code.functions[static_cast<std::size_t>(call.right)].name
                   : std::string{"the function"};
    }

    /// What a slot is for the reader.
    std::string subject(std::int32_t slot) const {
        const Variable* const variable = variableAt(slot);
        if (variable != nullptr && !variable->isTemporary) {
            return quoted(variable->isArray
                              ? variable->name + "[" + std::to_string(slot - variable->slot) + "]"
                              : variable->name);
        }
        const Instruction* const setter = setterOf(slot);
        if (setter == nullptr) {
            return "this value";
        }
        if (setter->operation == LoadElement) {
            return "an element of " +
                   quoted(code.arrays[static_cast<std::size_t>(setter->right)].name);
        }
        const bool isCopy = setter->operation == Copy || setter->operation == RealCopy;
        if (setter->operation == Result || setter->operation == RealResult) {
            return "the result of " + quoted(calleeBefore(*setter));
        }
        return isCopy ? subject(setter->left) : "this value";
    }

    void describeUnset(Fault& found, std::int32_t slot, Tag tag) const {
        if ((tag & (Tags::noResult | Tags::otherResult)) != 0) {
            describeMissingResult(found, slot, tag);
            return;
        }
        const Variable* const variable = variableAt(slot);
        found.rule = Rule::UnsetValue;
        if (tag == Tags::notPassed) {
            found.message = "nothing was passed for the parameter " + subject(slot);
            found.help = function.name == "main" ? "main is called without arguments"
                                                 : "pass a value of its type: a literal like `2.0` "
                                                   "counts as an int";
        } else if (variable != nullptr && !variable->isDeclared && !variable->isTemporary) {
            found.message = subject(slot) + " is declared nowhere, and nothing has set it";
            found.help = "the compiler does not check names here: declare it, or correct its name";
        } else {
            found.message = subject(slot) + " is read, but nothing has set it";
            found.help = variable != nullptr && variable->isArray
                             ? "a new array holds nothing: set its elements first"
                             : "set it on every way that leads here";
        }
    }

    void describeMissingResult(Fault& found, std::int32_t slot, Tag tag) const {
        const Variable* const variable = variableAt(slot);
        const bool isResult = variable == nullptr || variable->isTemporary;
        const std::string what =
            isResult ? subject(slot) : "a result, now in " + subject(slot) + ",";
        if (tag == Tags::otherResult) {
            found.rule = Rule::WrongType;
            found.message = what + " is used, but a value of another type was returned";
            found.help =
                "return a double from a function that is declared so: a literal like `2.0` "
                "counts as an int";
        } else {
            found.rule = Rule::MissingResult;
            found.message = what + " is used, but the function returned nothing";
            found.help = "let every way through the function end in a return with a value";
        }
    }

    void describeOtherType(Fault& found, std::int32_t slot, Tag tag, Tag expected) const {
        found.rule = Rule::WrongType;
        const std::string_view use =
            isCondition(instruction.operation) ? "a condition" : wordFor(expected);
        found.message = subject(slot) + " holds " + std::string{wordFor(tag)} +
                        ", and is used as " + std::string{use};
        found.help = isCondition(instruction.operation) ? "compare it with something"
                                                        : "types are not checked here: cast the "
                                                          "value before, or correct the expression";
    }

    void describeIndex(Fault& found) const {
        const Array& array = arrayAt();
        const std::uint64_t index = valueOf(instruction.left);
        if (array.isInList) {
            found.message = "the list is longer than " + quoted(array.name) + ", which has " +
                            std::to_string(array.length) +
                            (array.length == 1 ? " element" : " elements");
            found.help = "make the array larger, or the list shorter";
            return;
        }
        found.message =
            "index " + signedText(index) + " is outside of " + quoted(array.name) + ", whose " +
            (array.length == 1 ? std::string{"only index is 0"}
                               : "indexes are 0 to " + std::to_string(array.length - 1));
        found.help = "compare the index with the size of the array first";
    }

    void describeOverflow(Fault& found) const {
        if (instruction.operation == LostDigits) {
            const LostLiteral& literal = code.lost[static_cast<std::size_t>(instruction.to)];
            found.message = "the literal " + literal.written +
                            " does not fit into 32 bits: " + std::to_string(literal.taken) +
                            " is taken";
            found.help = "2147483647 is the largest; multiply smaller ones";
            return;
        }
        const std::string left = signedText(valueOf(instruction.left));
        found.message =
            (instruction.operation == Negate
                 ? "-(" + left + ")"
                 : left + std::string{symbolOf(instruction.operation)} + signedText(rightValue())) +
            " does not fit into an int";
        found.help = "an int has 64 bits and wraps around; --allow=overflow when that is meant";
    }

    void describeDivision(Fault& found) const {
        found.message = signedText(valueOf(instruction.left)) + " is divided by zero";
        found.help = "test the divisor in an `if` of its own first: `&&` evaluates both sides";
    }

    void describeDivisionOverflow(Fault& found) const {
        found.message = signedText(valueOf(instruction.left)) + " / -1 does not fit into an int";
        found.help = "the least int has no positive counterpart";
    }

    void describeRecursion(Fault& found) const {
        found.message =
            "the stack is full: " + std::to_string(machine.depth()) + " calls have not returned";
        found.help = "end the recursion, or make arrays smaller";
    }

    void describeMemory(Fault& found) const {
        found.message = "there is no memory left for strings";
        found.help = "strings that no variable holds are taken back; hold fewer or shorter ones";
    }

    void describeType(Fault& found) const {
        found.message = "this value is used as one of another type";
        found.help = "types are not checked here: cast the value before";
    }

    const Machine& machine;
    const Code& code;
    const Instruction& instruction;
    CallFrame innermost;
    const Function& function;
};

const std::array<Describer::Wording, ruleCount> Describer::wordings = {
    &Describer::describeIndex,    &Describer::describeType,
    &Describer::describeType,     &Describer::describeOverflow,
    &Describer::describeDivision, &Describer::describeDivisionOverflow,
    &Describer::describeType,     &Describer::describeRecursion,
    &Describer::describeMemory};

}  // namespace

/// Memory that is exhausted, a full stack and a division by zero end the program in any case.
bool Machine::isTolerated(Rule rule) {
    if (how.allowed.contains(rule)) {
        return true;
    }
    found = Describer{*this, *state.next}.fault(rule);
    return false;
}

/// Which of the operands of the next instruction is not what is expected, and whether that may be.
bool Machine::areOperandsTolerated() {
    const Instruction& next = *state.next;
    const Expectation& expected = expectationOf(next.operation);
    const CallFrame here = call(0);
    const auto isTolerable = [&](std::int32_t slot, Tag tag, Tag wanted) {
        if ((tag & wanted) != 0) {
            return true;
        }
        Fault fault = Describer{*this, next}.faultOf(slot, tag, wanted);
        if (how.allowed.contains(fault.rule)) {
            return true;
        }
        found = std::move(fault);
        return false;
    };
    const Tag left = tag(here, next.left);
    if (!isTolerable(next.left, left, expected.left)) {
        return false;
    }
    // The right operand has to be of the left one's type.
    const Tag both = (left & expected.left) != 0 ? left & expected.left : expected.left;
    if (expected.right != 0) {
        return isTolerable(next.right, tag(here, next.right), both);
    }
    const bool hasConstant =
        next.operation >= JumpEqualSlots && next.operation <= ConcatenateConstant;
    const Tag constant =
        hasConstant ? code.constantTags[static_cast<std::size_t>(next.right)] : both;
    return isTolerable(next.left, (constant & both) != 0 ? both : left, constant);
}

bool Machine::isElementTolerated() {
    if (how.allowed.contains(Rule::UnsetValue)) {
        return true;
    }
    found = Describer{*this, *state.next}.faultOfElement();
    return false;
}

bool Machine::isStoredTolerated() {
    const std::int32_t slot = state.next->to;
    Fault fault = Describer{*this, *state.next}.faultOf(slot, tag(call(0), slot), Tags::any);
    if (how.allowed.contains(fault.rule)) {
        return true;
    }
    found = std::move(fault);
    return false;
}

}  // namespace krel::Execution
