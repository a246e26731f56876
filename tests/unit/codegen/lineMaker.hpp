#pragma once

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace krel {

/// Writes random lines. The same seed gives the same lines everywhere.
class LineMaker {
public:
    using Words = std::vector<std::string>;

    explicit LineMaker(unsigned seed) : random(seed) {}

    std::size_t below(std::size_t limit) { return random() % limit; }

    std::string line() {
        std::string made = below(3) == 0 ? words() : form();
        for (std::size_t mutations = below(4); mutations > 1; --mutations) {
            mutate(made);
        }
        return made;
    }

private:
    const std::string& oneOf(const Words& choices) { return choices[below(choices.size())]; }

    /// Blanks between two parts of a form: mostly one, sometimes none or others.
    std::string blanks() {
        static const Words others = {"",   "",     "  ",  "\t",   "\v",   "\f",    "\r",
                                     "\n", " \t ", "\f ", "\r\n", "\v\v", " \xa0", "   "};
        return below(4) != 0 ? " " : oneOf(others);
    }

    std::string name() {
        static const Words names = {"x",    "_t0",  "_t17", "a",      "B7",        "main",
                                    "arg",  "call", "goto", "if",     "param",     "return",
                                    "true", "int",  "_",    "double", "inttochar", "inttodouble"};
        return oneOf(names);
    }

    std::string op() {
        static const Words operators = {"||", "&&", "==", "!=", "<=", ">=", "<", ">",  "+",
                                        "-",  "*",  "/",  "!",  "=",  "%",  "&", "|-", "=="};
        return oneOf(operators);
    }

    std::string value() {
        static const Words literals = {
            "5",         "-5",       "+7",           "1.5",          "-.5",     "true",
            "false",     "\"\"",     "\"text\"",     "\" \"",        "\" - \"", "\"-\"",
            "\"a + b\"", "\"\\\"\"", "\"[1] = \"",   "\" goto B3\"", "'c'",     "' '",
            "'\"'",      "'\\n'",    "\"\xc3\xa9\"", "\"a\xff\"",    "",        "-",
            "!",         "'",        "\"",           "a\nb"};
        switch (below(6)) {
            case 0:
            case 1:
                return name();
            case 2:
                return name() + (below(4) == 0 ? blanks() : "") + "[" + name() + "]";
            case 3:
                return name() + "[" + oneOf(literals) + "]";
            default:
                return oneOf(literals);
        }
    }

    std::string digits() {
        static const Words numbers = {"0", "1", "42", "007", "", "x", "1x"};
        return oneOf(numbers);
    }

    std::string form() {
        static const Words conversions = {"inttostring",    "chartostring", "booltostring",
                                          "inttochar",      "chartoint",    "inttodouble",
                                          "doubletostring", "chartodouble"};
        static const Words types = {"int", "double", "boolean", "character", "string", "void"};
        const std::string target = name() + blanks() + "=" + blanks();
        switch (below(11)) {
            case 0:
                return "param" + blanks() + oneOf(types) + blanks() + name();
            case 1:
                return "arg" + blanks() + value();
            case 2:
                return target + "call" + blanks() + name() + "," + blanks() + digits();
            case 3:
                return "call" + blanks() + name() + "," + blanks() + digits();
            case 4:
                return "if" + blanks() + value() + blanks() + "goto" + blanks() + "B" + digits();
            case 5:
                return below(2) == 0 ? "goto" + blanks() + "B" + digits()
                                     : "return" + (below(4) == 0 ? "" : blanks() + value());
            case 6:
                return target + oneOf(conversions) + blanks() + value();
            case 7:
                return target + value() + blanks() + op() + blanks() + value();
            case 8:
                return target + op() + blanks() + value();
            case 9:
                return value() + blanks() + "=" + blanks() + value();
            default:
                return target + value();
        }
    }

    std::string words() {
        std::string made;
        for (std::size_t count = 1 + below(9); count > 0; --count) {
            switch (below(5)) {
                case 0:
                    made += name();
                    break;
                case 1:
                    made += op();
                    break;
                case 2:
                    made += value();
                    break;
                case 3:
                    made += "=";
                    break;
                default:
                    made += below(2) == 0 ? "goto B1" : "]";
            }
            made += below(3) == 0 ? "" : blanks();
        }
        return made;
    }

    /// Takes out, puts in, replaces or doubles a few characters.
    void mutate(std::string& text) {
        static const std::string characters =
            std::string{" \t\n\v\f\r\"'\\[]=+-*/<>!&|,._aB09"} + '\0' + '\x80' + '\xff';
        const std::size_t at = below(text.size() + 1);
        const std::size_t size = below(4);
        switch (below(4)) {
            case 0:
                text.erase(at, size);
                break;
            case 1:
                text.insert(at, 1, characters[below(characters.size())]);
                break;
            case 2:
                text.replace(at, std::min(size, text.size() - at), 1,
                             characters[below(characters.size())]);
                break;
            default:
                text.insert(at, text.substr(below(text.size() + 1), size * 3));
        }
    }

    std::mt19937 random;
};

}  // namespace krel
