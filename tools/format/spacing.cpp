// Comes in: two neighbouring words. Goes out: whether there is a blank between them, and whether a
// line may end there.
#include "tools/format/spacing.hpp"

#include <array>
#include <cstddef>
#include <iterator>

#include "parser/parser.hpp"

namespace krel {

namespace Format {

namespace {

struct Code {
    int code;
    Role role;
};

/// The role of a word, as far as the word itself tells it. Signs and steps count as operators here,
/// braces as those of blocks. What is missing is a keyword, as new tokens are at first.
constexpr Code codes[] = {
    {T_INT_LITERAL, Role::Literal},
    {T_ID, Role::Name},
    {T_STRING_LITERAL, Role::Literal},
    {T_CHARACTER_LITERAL, Role::Literal},
    {T_DECIMAL_LITERAL, Role::Literal},
    {T_PLUS, Role::Operator},
    {T_MINUS, Role::Operator},
    {T_TIMES, Role::Operator},
    {T_DIVIDE, Role::Operator},
    {T_LPAREN, Role::OpeningParenthesis},
    {T_RPAREN, Role::ClosingParenthesis},
    {T_LBRACE, Role::OpeningBlock},
    {T_RBRACE, Role::ClosingBlock},
    {T_LBRACKET, Role::OpeningIndex},
    {T_RBRACKET, Role::ClosingIndex},
    {T_SEMICOLON, Role::Semicolon},
    {T_COMMA, Role::Comma},
    {T_ASSIGN, Role::Assignment},
    {T_PLUS_ASSIGN, Role::Assignment},
    {T_MINUS_ASSIGN, Role::Assignment},
    {T_INCREMENT, Role::Postfix},
    {T_DECREMENT, Role::Postfix},
    {T_LESS, Role::Operator},
    {T_GREATER, Role::Operator},
    {T_LESS_EQUAL, Role::Operator},
    {T_GREATER_EQUAL, Role::Operator},
    {T_EQUAL, Role::Operator},
    {T_NOT_EQUAL, Role::Operator},
    {T_NOT, Role::Prefix},
    {T_AND, Role::Operator},
    {T_OR, Role::Operator},
    {T_EXIT, Role::Name},
    {T_PRINT, Role::Name},
    {T_TRUE, Role::Literal},
    {T_FALSE, Role::Literal},
};

constexpr int firstCode = T_INT_LITERAL;
constexpr int lastCode = T_RETURN;

constexpr auto rolesOfCodes = [] {
    std::array<Role, lastCode - firstCode + 1> roles{};
    roles.fill(Role::Keyword);
    for (const Code& row : codes) {
        roles[static_cast<std::size_t>(row.code - firstCode)] = row.role;
    }
    return roles;
}();

/// How a role behaves towards its neighbours.
struct Habit {
    Role role;
    bool tightBefore;  // no blank before it
    bool tightBehind;
    bool breakBefore;  // a line may end before it
    bool breakBehind;
    bool operandEnd;  // what follows is no beginning of an operand
};

constexpr Habit habits[] = {
    {Role::Keyword, false, false, false, false, false},
    {Role::Name, false, false, false, false, true},
    {Role::Literal, false, false, false, false, true},
    {Role::Operator, false, false, true, true, false},
    {Role::Assignment, false, false, false, true, false},
    {Role::Sign, false, true, false, false, false},
    {Role::Prefix, false, true, false, false, false},
    {Role::Postfix, true, false, false, false, false},
    {Role::OpeningParenthesis, false, true, false, true, false},
    {Role::ClosingParenthesis, true, false, true, false, true},
    {Role::OpeningIndex, true, true, false, false, false},
    {Role::ClosingIndex, true, false, false, false, true},
    {Role::OpeningList, false, true, false, true, false},
    {Role::ClosingList, true, false, true, false, false},
    {Role::OpeningBlock, false, false, false, false, false},
    {Role::ClosingBlock, false, false, false, false, false},
    {Role::Comma, true, false, false, true, false},
    {Role::Semicolon, true, false, false, true, false},
};

constexpr bool isInOrder() {
    for (std::size_t row = 0; row < std::size(habits); ++row) {
        if (static_cast<std::size_t>(habits[row].role) != row) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder());

const Habit& habitOf(Role role) {
    return habits[static_cast<std::size_t>(role)];
}

/// What an operator is where no operand ends before it.
Role beforeOperand(Role role) {
    return role == Role::Operator ? Role::Sign : Role::Prefix;
}

}  // namespace

Role roleOf(int code, Role previous, bool inBrackets) {
    const auto index = static_cast<std::size_t>(code - firstCode);
    const Role role = index < rolesOfCodes.size() ? rolesOfCodes[index] : Role::Keyword;
    switch (role) {
        case Role::Operator:
        case Role::Postfix:
            return habitOf(previous).operandEnd ? role : beforeOperand(role);
        case Role::OpeningBlock:
            return previous == Role::Assignment ? Role::OpeningList : role;
        case Role::ClosingBlock:
            return inBrackets ? Role::ClosingList : role;
        default:
            return role;
    }
}

bool opens(Role role) {
    return role == Role::OpeningParenthesis || role == Role::OpeningIndex ||
           role == Role::OpeningList || role == Role::OpeningBlock;
}

bool closes(Role role) {
    return role == Role::ClosingParenthesis || role == Role::ClosingIndex ||
           role == Role::ClosingList || role == Role::ClosingBlock;
}

bool blankBetween(Role left, Role right) {
    if (left == Role::Sign && right == Role::Sign) {
        return true;  // two signs side by side would be another word
    }
    const bool call = left == Role::Name && right == Role::OpeningParenthesis;
    return !call && !habitOf(left).tightBehind && !habitOf(right).tightBefore;
}

bool keepsBreak(Role left, Role right) {
    return (habitOf(left).breakBehind || habitOf(right).breakBefore) &&
           !(opens(left) && closes(right));
}

}  // namespace Format

}  // namespace krel
