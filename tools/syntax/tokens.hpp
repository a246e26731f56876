#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "frontend/frontEnd.hpp"
#include "shared/error/place.hpp"

namespace krel::Syntax {

/// What a token is. The words of Krel come first, then what people write who know other languages.
enum class Word : std::uint8_t {
    End,
    Name,
    IntLiteral,
    DoubleLiteral,
    CharacterLiteral,
    StringLiteral,
    Plus,
    Minus,
    Times,
    Divide,
    LeftParenthesis,
    RightParenthesis,
    LeftBrace,
    RightBrace,
    LeftBracket,
    RightBracket,
    Semicolon,
    Comma,
    Assign,
    PlusAssign,
    MinusAssign,
    Increment,
    Decrement,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
    Equal,
    NotEqual,
    Not,
    And,
    Or,
    Int,
    Double,
    Boolean,
    Character,
    Void,
    String,
    If,
    Else,
    ElseIf,
    Exit,
    Print,
    True,
    False,
    For,
    While,
    Continue,
    Break,
    Return,
    // Not Krel:
    ForeignNumber,   // 1e-12, .5, 1., 1.5f, 0x1F
    ForeignString,   // 'text'
    UnclosedString,  // to the end of its line
    Percent,
    TimesAssign,
    DivideAssign,
    PercentAssign,
    BitAndAssign,
    BitOrAssign,
    BitXorAssign,
    ShiftLeftAssign,
    ShiftRightAssign,
    Power,
    Question,
    Colon,
    Scope,  // ::
    Dot,
    BitAnd,
    BitOr,
    BitXor,
    Complement,
    ShiftLeft,
    ShiftRight,
    Illegal  // other characters that begin no token, in a row
};

/// A token of the tolerant reading.
struct Token {
    Word word = Word::End;
    SourceRange range;
    bool beginsLine = false;  // nothing but white space and comments stands before it in its line
};

/// The tokens of a text, and what lies between them besides white space.
struct Tokens {
    std::vector<Token> words;  // in order; the last is the end of the text
    std::vector<SourceRange> comments;
    std::vector<SourceRange> foreignComments;  // from "//" and "/*"
    std::vector<SourceRange> carriageReturns;
};

/// Puts the front end's pieces of a text together to the tokens of the tolerant reading: "*" and
/// "=" that touch are one operator, "//" begins a comment. Takes time in proportion to the text.
Tokens tokensOf(std::string_view text, const std::vector<FrontEnd::Token>& pieces);

/// Whether the word names one of Krel's types.
constexpr bool isTypeWord(Word word) {
    return Word::Int <= word && word <= Word::String;
}

}  // namespace krel::Syntax
