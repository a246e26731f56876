// What the compiler says, for people. Comes in: a compilation. Goes out: its faults with places,
// rules and readable messages.

#include "tools/check/compilerFaults.hpp"

#include <algorithm>
#include <array>
#include <numeric>

namespace krel::Check {

namespace {

struct TokenText {
    std::string_view token;
    std::string_view text;
};

constexpr std::array tokenTexts = {
    TokenText{"T_ID", "a name"},
    TokenText{"T_INT_LITERAL", "an integer"},
    TokenText{"T_DECIMAL_LITERAL", "a double literal"},
    TokenText{"T_CHARACTER_LITERAL", "a character literal"},
    TokenText{"T_STRING_LITERAL", "a string literal"},
    TokenText{"T_PLUS_ASSIGN", "`+=`"},
    TokenText{"T_MINUS_ASSIGN", "`-=`"},
    TokenText{"T_PLUS", "`+`"},
    TokenText{"T_MINUS", "`-`"},
    TokenText{"T_TIMES", "`*`"},
    TokenText{"T_DIVIDE", "`/`"},
    TokenText{"T_LPAREN", "`(`"},
    TokenText{"T_RPAREN", "`)`"},
    TokenText{"T_LBRACE", "`{`"},
    TokenText{"T_RBRACE", "`}`"},
    TokenText{"T_LBRACKET", "`[`"},
    TokenText{"T_RBRACKET", "`]`"},
    TokenText{"T_SEMICOLON", "`;`"},
    TokenText{"T_COMMA", "`,`"},
    TokenText{"T_ASSIGN", "`=`"},
    TokenText{"T_INCREMENT", "`++`"},
    TokenText{"T_DECREMENT", "`--`"},
    TokenText{"T_LESS_EQUAL", "`<=`"},
    TokenText{"T_GREATER_EQUAL", "`>=`"},
    TokenText{"T_LESS", "`<`"},
    TokenText{"T_GREATER", "`>`"},
    TokenText{"T_EQUAL", "`==`"},
    TokenText{"T_NOT_EQUAL", "`!=`"},
    TokenText{"T_NOT", "`!`"},
    TokenText{"T_AND", "`&&`"},
    TokenText{"T_OR", "`||`"},
};

/// `T_ELSEIF` is the word `elseif`.
std::string textOfToken(std::string_view token) {
    for (const TokenText& known : tokenTexts) {
        if (known.token == token) {
            return std::string{known.text};
        }
    }
    std::string word = "`";
    for (const char letter : token.substr(2)) {
        word += static_cast<char>(letter - 'A' + 'a');
    }
    return word + "`";
}

/// Where the function begins that a message ends with.
SourceRange rangeOfFunction(const FrontEnd::Compilation& compilation, std::string_view message) {
    const std::string_view name = message.substr(message.rfind(' ') + 1);
    const Symbol* const symbol = compilation.symbol(name, name);
    return symbol == nullptr ? SourceRange{} : symbol->getPlace().range;
}

SourceRange rangeOfRefusal(const FrontEnd::Compilation& compilation) {
    const std::vector<FrontEnd::IRLine>& lines = compilation.irLines();
    const std::size_t refused = compilation.refusedIRLine();
    if (refused < lines.size()) {
        return lines[refused].source;
    }
    constexpr std::string_view unterminated = "unterminated string literal in IR instruction: ";
    const std::string_view message = compilation.failure();
    if (message.substr(0, unterminated.size()) != unterminated) {
        return rangeOfFunction(compilation, message);
    }
    for (const FrontEnd::IRLine& line : lines) {
        const auto& block = compilation.ir().getFunctions()[line.function].getBlocks()[line.block];
        if (block.getInstructions()[line.instruction].getText() ==
            message.substr(unterminated.size())) {
            return line.source;
        }
    }
    return {};
}

}  // namespace

std::vector<CompilerFault> faultsOf(const FrontEnd::Compilation& compilation) {
    std::vector<CompilerFault> all;
    for (const FrontEnd::Fault& fault : compilation.faults()) {
        SourceRange range = fault.place.range;
        if (range.begin == range.end && range.begin == 0) {
            range.begin = range.end = compilation.lines().offsetOf({fault.place.line, 1});
        }
        all.push_back({fault.message, range, fault.place.line});
    }
    if (compilation.outcome() == FrontEnd::Outcome::NotTranslated) {
        all.push_back({compilation.failure(), rangeOfRefusal(compilation), 0, true});
    } else if (compilation.outcome() == FrontEnd::Outcome::InternalError) {
        all.push_back({compilation.failure(), {}, 0, true});
    }
    return all;
}

std::string readable(std::string_view message, std::string_view token) {
    constexpr std::string_view unexpected = "syntax error, unexpected T_";
    constexpr std::size_t longestToken = 40;
    std::string text;
    if (message.substr(0, unexpected.size()) == unexpected && !token.empty() &&
        token.size() <= longestToken && token.find('\n') == token.npos) {
        const std::size_t end =
            std::min(message.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_", unexpected.size()),
                     message.size());
        text = "syntax error, unexpected `" + std::string{token} + "`";
        message.remove_prefix(end);
    }
    while (!message.empty()) {
        const std::size_t begin = message.find("T_");
        text += message.substr(0, begin);
        if (begin == message.npos) {
            break;
        }
        const std::size_t end = std::min(
            message.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_", begin), message.size());
        text += textOfToken(message.substr(begin, end - begin));
        message.remove_prefix(end);
    }
    constexpr std::string_view stock = "syntax error, ";
    return text.substr(0, stock.size()) == stock ? text.substr(stock.size()) : text;
}

bool followsFromOther(std::string_view message) {
    return message.find("''") != message.npos && message.find("illegal character") == message.npos;
}

namespace {

/// In how many letters two words differ; more than `limit` when it is more.
std::size_t distanceOf(std::string_view left, std::string_view right, std::size_t limit) {
    if (left.size() > right.size() + limit || right.size() > left.size() + limit) {
        return limit + 1;
    }
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i - 1] == right[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row[right.size()];
}

}  // namespace

std::string similarName(const Model& model, FunctionId function, std::string_view name) {
    constexpr std::size_t longest = 100;
    constexpr std::size_t manyNames = 1000;
    if (name.size() > longest || name.size() < 2) {
        return {};
    }
    const std::size_t limit = name.size() < 4 ? 1 : 2;
    std::string best;
    std::size_t least = limit + 1;
    const auto consider = [&](std::string_view candidate) {
        const std::size_t distance =
            candidate == name ? limit + 1 : distanceOf(name, candidate, limit);
        if (distance < least) {
            least = distance;
            best = candidate;
        }
    };
    if (function != noFunction) {
        const std::vector<VariableId>& variables = model.functions()[function].variables;
        for (std::size_t index = 0; index < std::min(variables.size(), manyNames); ++index) {
            consider(model.variables()[variables[index]].name);
        }
    }
    for (std::size_t index = 0; index < std::min(model.functions().size(), manyNames); ++index) {
        consider(model.functions()[index].name);
    }
    return best;
}

}  // namespace krel::Check
