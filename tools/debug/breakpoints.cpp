// Breakpoints. Comes in: what the user wants. Goes out: places in the program, and whether to stop
// when the program comes by.

#include "tools/debug/breakpoints.hpp"

#include <algorithm>
#include <charconv>
#include <utility>

#include "tools/debug/values.hpp"

namespace krel::Debug {

bool HitRule::holds(std::uint64_t hit) const {
    switch (kind) {
        case Kind::Exactly:
            return hit == number;
        case Kind::From:
            return hit >= number;
        case Kind::Each:
            return hit % number == 0;
    }
    return false;
}

HitRule hitRuleOf(std::string_view text) {
    struct Sign {
        std::string_view sign;
        HitRule::Kind kind;
        std::uint64_t more;
    };
    static constexpr Sign signs[] = {{">=", HitRule::Kind::From, 0},
                                     {">", HitRule::Kind::From, 1},
                                     {"==", HitRule::Kind::Exactly, 0},
                                     {"=", HitRule::Kind::Exactly, 0},
                                     {"%", HitRule::Kind::Each, 0}};
    const auto skipBlanks = [](std::string_view rest) {
        rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
        return rest;
    };
    std::string_view rest = skipBlanks(text);
    HitRule rule;
    std::uint64_t more = 0;
    for (const Sign& sign : signs) {
        if (rest.starts_with(sign.sign)) {
            rule.kind = sign.kind;
            more = sign.more;
            rest = skipBlanks(rest.substr(sign.sign.size()));
            break;
        }
    }
    const auto [end, fault] = std::from_chars(rest.data(), rest.data() + rest.size(), rule.number);
    const auto behind = static_cast<std::size_t>(end - rest.data());
    if (fault != std::errc{} || !skipBlanks(rest.substr(behind)).empty() || rule.number == 0) {
        throw BadExpression("`" + std::string{text} +
                            "` does not say which hits count: write 3, >= 3 or % 3");
    }
    rule.number += more;
    return rule;
}

Breakpoint::Breakpoint(int itsId, Wish itsWish, const Program& program, Execution::RuleSet allowed)
    : number(itsId), wanted(std::move(itsWish)) {
    try {
        findPlace(program);
        const std::size_t function = program.compilation->irLines()[irLines.front()].function;
        if (!wanted.condition.empty()) {
            condition = std::make_unique<Expression>(program, function, wanted.condition,
                                                     Purpose::Condition, allowed);
        }
        if (!wanted.hits.empty()) {
            rule = hitRuleOf(wanted.hits);
        }
        readMessage(program, function, allowed);
    } catch (const BadExpression& fault) {
        what = fault.what();
        irLines.clear();
        sourceLine = 0;
    }
}

void Breakpoint::findPlace(const Program& program) {
    if (const int* const line = std::get_if<int>(&wanted.place)) {
        sourceLine = program.lines.lineWithCodeFrom(*line);
        if (sourceLine == 0) {
            throw BadExpression("there is no code in line " + std::to_string(*line) +
                                " or behind it");
        }
        irLines = program.lines.placesOf(sourceLine);
        return;
    }
    if (const auto* const name = std::get_if<std::string>(&wanted.place)) {
        const auto function = program.functionNamed(*name);
        if (!function) {
            throw BadExpression("there is no function `" + *name + "`");
        }
        irLines = {program.bodyOf(*function)};
    } else {
        irLines = {std::get<Wish::Instruction>(wanted.place).irLine};
    }
    sourceLine = program.lines.lineOf(irLines.front());
}

/// Braces hold expressions; one that is not closed stands for itself.
void Breakpoint::readMessage(const Program& program, std::size_t function,
                             Execution::RuleSet allowed) {
    std::string_view rest = wanted.message;
    while (!rest.empty()) {
        const std::size_t open = rest.find('{');
        const std::size_t close = open == rest.npos ? rest.npos : rest.find('}', open);
        message.push_back(
            {std::string{rest.substr(0, close == rest.npos ? close : open)}, nullptr});
        if (close == rest.npos) {
            return;
        }
        message.push_back({{},
                           std::make_unique<Expression>(program, function,
                                                        rest.substr(open + 1, close - open - 1),
                                                        Purpose::Value, allowed)});
        rest.remove_prefix(close + 1);
    }
}

bool Breakpoint::applies(const Execution::Machine& machine) {
    if (condition && !condition->holds(machine, machine.call(0))) {
        return false;
    }
    if (!rule) {
        return true;
    }
    const std::uint64_t step = machine.stepsDone();
    const auto at = std::ranges::lower_bound(hits, step);
    const auto before = static_cast<std::uint64_t>(at - hits.begin());
    if (at == hits.end() || *at != step) {
        hits.insert(at, step);
    }
    return rule->holds(before + 1);
}

std::string Breakpoint::log(const Execution::Machine& machine) {
    std::string text;
    for (const Piece& piece : message) {
        try {
            text += piece.expression ? piece.expression->evaluate(machine, machine.call(0)).text
                                     : piece.text;
        } catch (const BadExpression& fault) {
            text += "{" + std::string{fault.what()} + "}";
        }
    }
    return text;
}

void Breakpoint::forgetAfter(std::uint64_t step) {
    hits.erase(std::ranges::upper_bound(hits, step), hits.end());
}

}  // namespace krel::Debug
