#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace krel::Execution {

/// What a checked run stops at.
enum class Rule : std::uint8_t {
    IndexOutside,
    UnsetValue,
    MissingResult,
    Overflow,
    DivisionByZero,
    DivisionOverflow,
    WrongType,
    DeepRecursion,
    OutOfMemory
};
inline constexpr std::size_t ruleCount = 9;

/// The name of a rule, as reports and options have it.
std::string_view nameOf(Rule rule);
/// The rule of a name; nothing when there is none.
std::optional<Rule> ruleNamed(std::string_view name);

/// Some rules.
class RuleSet {
public:
    bool contains(Rule rule) const { return (bits >> static_cast<unsigned>(rule) & 1U) != 0; }
    void add(Rule rule) { bits |= 1U << static_cast<unsigned>(rule); }
    void addAll() { bits = ~0U; }

private:
    std::uint32_t bits = 0;
};

/// What a checked run has found.
struct Fault {
    Rule rule{};
    std::uint32_t line = 0;  // of the intermediate code
    std::string message;     // what happened, with the values involved
    std::string help;        // what to do about it
};

}  // namespace krel::Execution
