// Comes in: a text. Goes out: the same program in the one layout, or why it does not parse. The
// steps: mend the line ends, parse, lay the tokens out in lines, give the comments their columns,
// and compare the tokens of the result with those of the source.
#include "tools/format/format.hpp"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include "frontend/frontEnd.hpp"
#include "tools/format/columns.hpp"
#include "tools/format/layout.hpp"
#include "tools/format/writer.hpp"

namespace krel {

namespace Format {

namespace {

using FrontEnd::Token;

/// The text without the carriage returns that end its lines.
std::string withPlainLineEnds(std::string_view source) {
    std::string text;
    text.reserve(source.size());
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = source.find('\n', begin)) != source.npos; begin = end + 1) {
        text += withoutEnd(source.substr(begin, end - begin), "\r");
        text += '\n';
    }
    text += source.substr(begin);
    return text;
}

/// The faults for which a program does not parse. Names that are declared twice, which the parser
/// finds as well, are none of them.
std::vector<std::string> faultsOf(const FrontEnd::Compilation& parsed) {
    std::vector<std::string> lines;
    for (const FrontEnd::Fault& fault : parsed.faults()) {
        if (fault.kind != DiagnosticKind::Semantic) {
            lines.push_back(fault.line);
        }
    }
    return lines;
}

/// Walks over the words and comments of a text.
class Reader {
public:
    Reader(std::string_view itsText, const std::vector<Token>& itsTokens)
        : text(itsText), next(itsTokens.begin()), end(itsTokens.end()) {}

    /// The next word or comment; null behind the last one.
    const Token* read() {
        while (next != end && next->kind == Token::Kind::WhiteSpace) {
            ++next;
        }
        return next == end ? nullptr : &*next++;
    }
    std::string_view textOf(const Token& token) const {
        return text.substr(token.range.begin, token.range.end - token.range.begin);
    }

private:
    std::string_view text;
    std::vector<Token>::const_iterator next;
    std::vector<Token>::const_iterator end;
};

/// Whether two comments differ only in the white space at the ends of their lines.
bool sameComments(std::string_view left, std::string_view right) {
    while (!left.empty() && !right.empty()) {
        if (withoutEnds(takeLine(left), blanks) != withoutEnds(takeLine(right), blanks)) {
            return false;
        }
    }
    return left.empty() && right.empty();
}

/// Whether both have the same words and comments in the same order.
bool sameProgram(Reader left, Reader right) {
    const Token* one = left.read();
    const Token* other = right.read();
    for (; one != nullptr && other != nullptr; one = left.read(), other = right.read()) {
        const bool comment = one->kind == Token::Kind::Comment;
        if (one->kind != other->kind || one->code != other->code ||
            !(comment ? sameComments(left.textOf(*one), right.textOf(*other))
                      : left.textOf(*one) == right.textOf(*other))) {
            return false;
        }
    }
    return one == other;
}

}  // namespace

Result format(std::string_view source, const std::string& name) {
    const auto parsed =
        FrontEnd::compile(withPlainLineEnds(source), name, {.parseOnly = true, .tokens = true});
    Result result;
    result.faults = faultsOf(*parsed);
    result.parses = result.faults.empty();
    if (!result.parses) {
        return result;
    }
    result.text = textOf(parsed->text(), layOut(parsed->text(), parsed->tokens()));
    if (!sameProgram({parsed->text(), parsed->tokens()},
                     {result.text, FrontEnd::tokensOf(result.text)})) {
        throw std::logic_error("formatting would change the program");
    }
    return result;
}

}  // namespace Format

}  // namespace krel
