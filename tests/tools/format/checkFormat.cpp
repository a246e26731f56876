// Formats programs and checks that they have stayed the same programs: the compiler makes the same
// of them, apart from line numbers in messages, and formatting again changes nothing. Each program
// is also tried with other white space and with comments put between its tokens.
//
// Usage: krel_format_check PROGRAM...
// Prints each fault, and how many programs parse; the status is 1 if there is a fault.
#include <cstddef>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include "frontend/frontEnd.hpp"
#include "tools/format/format.hpp"

namespace {

using namespace krel;
using FrontEnd::Token;

/// The line of a message, without the number of the source's line.
std::string withoutNumber(std::string line) {
    constexpr std::string_view before = " at line ";
    if (const std::size_t found = line.find(before); found != line.npos) {
        const std::size_t begin = found + before.size();
        line.erase(begin, line.find_first_not_of("0123456789", begin) - begin);
    }
    return line;
}

/// All that the compiler makes of a program, without the numbers of lines.
std::string madeOf(const std::string& program) {
    const auto made = FrontEnd::compile(program, "p.krl");
    std::string text = std::to_string(static_cast<int>(made->outcome())) + made->failure() + '\n';
    for (const FrontEnd::Fault& fault : made->faults()) {
        text += withoutNumber(fault.line) + '\n';
    }
    return text + made->ir().toString() + made->assembly();
}

/// The program with something else where white space stands or might stand; comments keep theirs.
/// `gap` is asked for what to put between two words; it gets the white space that was there.
template <typename Gap>
std::string withGaps(const std::string& text, Gap gap) {
    std::string result;
    std::string_view space;
    bool behindWord = false;
    for (const Token& token : FrontEnd::tokensOf(text)) {
        const std::string_view piece =
            std::string_view{text}.substr(token.range.begin, token.range.end - token.range.begin);
        const bool word = token.kind == Token::Kind::Word;
        if (token.kind == Token::Kind::WhiteSpace) {
            space = piece;
            continue;
        }
        if (word && behindWord) {
            result += gap(space);
        } else {
            result += space;
        }
        result += piece;
        behindWord = word;
        space = {};
    }
    return result.append(space);
}

class Check {
public:
    /// Returns whether the program parses.
    bool run(const std::string& name, const std::string& source) {
        random.seed(static_cast<unsigned>(source.size()));
        program = name;
        const Format::Result formatted = Format::format(source, "p.krl");
        if (!formatted.parses) {
            expect(formatted.text.empty() && !formatted.faults.empty(), "refused without reason");
            return false;
        }
        checkSame(source, formatted.text, "it");
        const auto blanks = [this](std::string_view space) { return otherBlanks(space); };
        expect(Format::format(withGaps(source, blanks), "p.krl").text == formatted.text,
               "the blanks of the source show");
        const auto breaks = [this](std::string_view space) { return otherBreaks(space); };
        checkVariant(withGaps(formatted.text, breaks), "with other line breaks, it");
        const auto comments = [this](std::string_view space) { return withComment(space); };
        checkVariant(withGaps(formatted.text, comments), "with more comments, it");
        return true;
    }

    bool failed() const { return faults > 0; }

private:
    void expect(bool holds, const std::string& fault) {
        if (!holds) {
            ++faults;
            std::cout << program << ": " << fault << '\n';
        }
    }

    /// Carriage returns are illegal to the compiler, and mended by formatting.
    void checkSame(const std::string& source, const std::string& formatted,
                   const std::string& what) {
        if (source.find("\r\n") == source.npos) {
            expect(madeOf(source) == madeOf(formatted), what + " becomes another program");
        }
        expect(Format::format(formatted, "p.krl").text == formatted,
               what + " changes when it is formatted again");
    }

    /// A comment may close another one, in which the rest of the program then is.
    void checkVariant(const std::string& variant, const std::string& what) {
        const Format::Result formatted = Format::format(variant, "p.krl");
        if (formatted.parses) {
            checkSame(variant, formatted.text, what);
        }
    }

    bool oneIn(unsigned cases) { return random() % cases == 0; }

    /// Between words that were apart before there is always something.
    std::string otherBlanks(std::string_view space) {
        if (space.find('\n') != space.npos) {
            return std::string{space} + (oneIn(2) ? "\t " : "");
        }
        return space.empty() ? "" : oneIn(2) ? " \t" : "   ";
    }

    std::string otherBreaks(std::string_view space) {
        if (space.empty()) {
            return oneIn(20) ? "\n " : "";
        }
        return oneIn(3) ? "\n" : oneIn(10) ? "\n\n\n" : "\t";
    }

    std::string withComment(std::string_view space) {
        static const std::string comments[] = {"# c\n",          " #{ one }# line\n",
                                               "\n   # alone\n", "#{ two\n\t lines }#",
                                               "\n#{ }}# }\n}#", "  # c\n    # d\n\n"};
        return std::string{space} + (oneIn(8) ? comments[random() % std::size(comments)] : "");
    }

    std::minstd_rand random;
    std::string program;
    int faults = 0;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    Check check;
    int parsed = 0;
    for (int i = 1; i < argumentCount; ++i) {
        std::ifstream file{arguments[i], std::ios::binary};
        if (!file) {
            std::cout << arguments[i] << ": cannot be read\n";
            return 1;
        }
        std::ostringstream content;
        content << file.rdbuf();
        parsed += check.run(arguments[i], content.str()) ? 1 : 0;
    }
    std::cout << parsed << " of " << argumentCount - 1 << " programs parse\n";
    return check.failed() ? 1 : 0;
}
