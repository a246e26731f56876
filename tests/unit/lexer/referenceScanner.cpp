#include "referenceScanner.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <string_view>
#include <vector>

namespace krel {

namespace {

using Length = std::size_t;

/// How much of the text's beginning a rule matches; 0 for nothing.
using Match = std::function<Length(std::string_view)>;

/// What a match gives: nothing, a token without value, or one with a value of some form.
enum class Result { Skip, Token, Text, Int, Double, Illegal };

struct Rule {
    Match match;
    Result result;
    const char* token;
};

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           character == '_';
}

/// The longest prefix of which every character satisfies `belongs`.
template <typename Belongs>
Length run(std::string_view text, Belongs belongs) {
    return static_cast<Length>(std::find_if_not(text.begin(), text.end(), belongs) - text.begin());
}

Length whiteSpace(std::string_view text) {
    return run(text, [](char c) { return c == ' ' || c == '\t' || c == '\n'; });
}

Length blockComment(std::string_view text) {
    if (!text.starts_with("#{")) {
        return 0;
    }
    Length at = 2;
    while (at < text.size()) {
        if (text[at] != '}') {
            ++at;
        } else if (at + 1 == text.size()) {
            return 0;
        } else if (text[at + 1] != '#') {
            at += 2;
        } else {
            return at + 2;
        }
    }
    return 0;
}

Length lineComment(std::string_view text) {
    return text.starts_with('#') ? run(text, [](char c) { return c != '\n'; }) : 0;
}

Length identifier(std::string_view text) {
    return !text.empty() && isLetter(text[0])
               ? run(text, [](char c) { return isLetter(c) || isDigit(c); })
               : 0;
}

/// The length of one item of a quoted literal: a character that is neither the quote, a backslash
/// nor a line feed, or a backslash and any character but a line feed.
Length quotedItem(std::string_view text, char quote) {
    if (text.empty() || text[0] == quote || text[0] == '\n') {
        return 0;
    }
    if (text[0] != '\\') {
        return 1;
    }
    return text.size() > 1 && text[1] != '\n' ? 2 : 0;
}

Length quoted(std::string_view text, char quote, Length mostItems) {
    if (!text.starts_with(quote)) {
        return 0;
    }
    Length at = 1;
    for (Length items = 0; items < mostItems; ++items) {
        const Length item = quotedItem(text.substr(at), quote);
        if (item == 0) {
            break;
        }
        at += item;
    }
    return at < text.size() && text[at] == quote ? at + 1 : 0;
}

Length stringLiteral(std::string_view text) {
    return quoted(text, '"', text.size());
}

Length characterLiteral(std::string_view text) {
    return quoted(text, '\'', 1);
}

Length integerLiteral(std::string_view text) {
    return run(text, isDigit);
}

Length decimalLiteral(std::string_view text) {
    const Length whole = run(text, isDigit);
    if (whole == 0 || !text.substr(whole).starts_with('.')) {
        return 0;
    }
    const Length fraction = run(text.substr(whole + 1), isDigit);
    return fraction == 0 ? 0 : whole + 1 + fraction;
}

Length anyCharacter(std::string_view text) {
    return text[0] == '\n' ? 0 : 1;
}

Match exactly(std::string_view word) {
    return [word](std::string_view text) { return text.starts_with(word) ? word.size() : 0; };
}

const std::vector<Rule>& rules() {
    static const std::vector<Rule> all = [] {
        constexpr std::array<std::pair<const char*, const char*>, 44> words = {{
            {"+=", "T_PLUS_ASSIGN"}, {"-=", "T_MINUS_ASSIGN"}, {"++", "T_INCREMENT"},
            {"--", "T_DECREMENT"},   {"<=", "T_LESS_EQUAL"},   {">=", "T_GREATER_EQUAL"},
            {"==", "T_EQUAL"},       {"!=", "T_NOT_EQUAL"},    {"&&", "T_AND"},
            {"||", "T_OR"},          {"+", "T_PLUS"},          {"-", "T_MINUS"},
            {"*", "T_TIMES"},        {"/", "T_DIVIDE"},        {"(", "T_LPAREN"},
            {")", "T_RPAREN"},       {"{", "T_LBRACE"},        {"}", "T_RBRACE"},
            {"[", "T_LBRACKET"},     {"]", "T_RBRACKET"},      {";", "T_SEMICOLON"},
            {",", "T_COMMA"},        {"=", "T_ASSIGN"},        {"<", "T_LESS"},
            {">", "T_GREATER"},      {"!", "T_NOT"},           {"int", "T_INT"},
            {"double", "T_DOUBLE"},  {"boolean", "T_BOOLEAN"}, {"character", "T_CHARACTER"},
            {"void", "T_VOID"},      {"string", "T_STRING"},   {"if", "T_IF"},
            {"else", "T_ELSE"},      {"elseif", "T_ELSEIF"},   {"exit", "T_EXIT"},
            {"print", "T_PRINT"},    {"true", "T_TRUE"},       {"false", "T_FALSE"},
            {"for", "T_FOR"},        {"while", "T_WHILE"},     {"continue", "T_CONTINUE"},
            {"break", "T_BREAK"},    {"return", "T_RETURN"},
        }};
        std::vector<Rule> list = {{whiteSpace, Result::Skip, ""},
                                  {blockComment, Result::Skip, ""},
                                  {lineComment, Result::Skip, ""}};
        for (const auto& [word, token] : words) {
            list.push_back({exactly(word), Result::Token, token});
        }
        list.push_back({identifier, Result::Text, "T_ID"});
        list.push_back({stringLiteral, Result::Text, "T_STRING_LITERAL"});
        list.push_back({characterLiteral, Result::Text, "T_CHARACTER_LITERAL"});
        list.push_back({decimalLiteral, Result::Double, "T_DECIMAL_LITERAL"});
        list.push_back({integerLiteral, Result::Int, "T_INT_LITERAL"});
        list.push_back({anyCharacter, Result::Illegal, ""});
        return list;
    }();
    return all;
}

/// What the scanner shows of a match. Values are C strings: they end at a NUL.
void describe(std::ostream& out, const Rule& rule, const std::string& match, int line) {
    if (rule.result == Result::Skip) {
        return;
    }
    if (rule.result == Result::Illegal) {
        out << "Lexer error at line " << line << ": illegal character '" << match << "'\n";
        return;
    }
    out << line << ' ' << rule.token;
    if (rule.result == Result::Text) {
        out << ' ' << match.c_str();
    } else if (rule.result == Result::Int) {
        out << ' ' << std::atoi(match.c_str());
    } else if (rule.result == Result::Double) {
        out << ' ' << std::atof(match.c_str());
    }
    out << '\n';
}

}  // namespace

std::string referenceScan(const std::string& text) {
    std::ostringstream out;
    out.precision(17);
    int line = 1;
    std::string_view rest = text;
    while (!rest.empty()) {
        const Rule* best = nullptr;
        Length longest = 0;
        for (const Rule& rule : rules()) {
            const Length length = rule.match(rest);
            if (length > longest) {
                best = &rule;
                longest = length;
            }
        }
        const std::string match{rest.substr(0, longest)};
        line += static_cast<int>(std::count(match.begin(), match.end(), '\n'));
        describe(out, *best, match, line);
        rest.remove_prefix(longest);
    }
    return out.str();
}

}  // namespace krel
