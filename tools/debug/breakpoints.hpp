#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tools/debug/expression.hpp"
#include "tools/debug/program.hpp"

namespace krel::Debug {

/// A breakpoint as the user wants it.
struct Wish {
    /// A line of the source, a function, or a line of the intermediate code.
    struct Instruction {
        std::size_t irLine;
    };
    std::variant<int, std::string, Instruction> place = 1;
    std::string condition;  // it stops only where this holds
    std::string hits;       // ... and at the hits that this tells: "3", ">= 3" or "% 3"
    std::string message;    // it does not stop but logs this; expressions stand in braces
};

/// Which hits count: the n-th one, all from there on, or each n-th one.
struct HitRule {
    enum class Kind { Exactly, From, Each };

    Kind kind = Kind::Exactly;
    std::uint64_t number = 0;

    bool holds(std::uint64_t hit) const;
};
/// Reads such a rule: a number, perhaps behind "=", "==", ">=", ">" or "%". Throws BadExpression.
HitRule hitRuleOf(std::string_view text);

/// A breakpoint in a program.
class Breakpoint {
public:
    /// Finds the place. A line without code stands for the next one with code. What is wrong is
    /// kept as the problem; the breakpoint then has no place.
    Breakpoint(int itsId, Wish itsWish, const Program& program, Execution::RuleSet allowed);

    int id() const { return number; }
    const Wish& wish() const { return wanted; }
    bool hasPlace() const { return !irLines.empty(); }
    /// The line of the source where it stops; 0 without a place.
    int line() const { return sourceLine; }
    const std::vector<std::size_t>& places() const { return irLines; }
    /// Why it has no place; empty when it has one.
    const std::string& problem() const { return what; }
    bool isLogPoint() const { return !message.empty(); }

    /// Whether it stops, or logs, at the machine's place. Hits are told apart by their steps: going
    /// back and coming by once more does not make another one. Throws BadExpression.
    bool applies(const Execution::Machine& machine);
    /// The message of a log point. What cannot be evaluated is told in its place.
    std::string log(const Execution::Machine& machine);
    /// Forgets the hits behind a step.
    void forgetAfter(std::uint64_t step);

private:
    struct Piece {
        std::string text;  // when there is no expression
        std::unique_ptr<Expression> expression;
    };

    void findPlace(const Program& program);
    void readMessage(const Program& program, std::size_t function, Execution::RuleSet allowed);

    int number;
    Wish wanted;
    std::string what;
    int sourceLine = 0;
    std::vector<std::size_t> irLines;
    std::unique_ptr<Expression> condition;
    std::optional<HitRule> rule;
    std::vector<Piece> message;
    std::vector<std::uint64_t> hits;  // their steps, if there is a rule
};

}  // namespace krel::Debug
