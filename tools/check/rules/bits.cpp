// Operators that Krel has not: bits and powers. Comes in: operations. Goes out: arithmetic, or
// calls of functions that are added to the program.

/// # bit-operator
///
/// ## What it finds
///
/// `&`, `|`, `^`, `~`, `<<`, `>>` and `**`, also before `=`.
///
/// ## Why
///
/// There are none. A shift by a literal is a multiplication or division by a power of two, and `&`
/// with one less than such a power is a remainder; the last two differ for negative numbers. What
/// else there is needs a function; the repair adds it.
///
/// ## Example
///
/// ```krel example fragment
/// i = n << 3;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = n * 8;
/// ```

#include <array>
#include <string>
#include <utility>

#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

/// A function that a repair adds to the program. "NAME" stands for its name.
struct Helper {
    Word op;
    std::string_view name;
    std::string_view text;
};

/// Goes through the bits of both numbers; `result` takes those that the condition chooses.
constexpr std::string_view bits =
    "int NAME(int left, int right) {\n"
    "    int result = 0;\n"
    "    int bit = 1;\n"
    "    for (int count = 0; count < 64; count++) {\n"
    "        int leftHalf = left / 2;\n"
    "        int leftBit = left - leftHalf * 2;\n"
    "        if (leftBit < 0) { leftBit = 1; leftHalf = leftHalf - 1; }\n"
    "        int rightHalf = right / 2;\n"
    "        int rightBit = right - rightHalf * 2;\n"
    "        if (rightBit < 0) { rightBit = 1; rightHalf = rightHalf - 1; }\n"
    "        if (leftBit + rightBit CHOICE) { result = result + bit; }\n"
    "        bit = bit + bit;\n"
    "        left = leftHalf;\n"
    "        right = rightHalf;\n"
    "    }\n"
    "    return result;\n"
    "}\n";

constexpr std::string_view shiftLeft =
    "int NAME(int value, int count) {\n"
    "    for (int step = 0; step < count; step++) { value = value + value; }\n"
    "    return value;\n"
    "}\n";

constexpr std::string_view shiftRight =
    "int NAME(int value, int count) {\n"
    "    for (int step = 0; step < count; step++) {\n"
    "        int half = value / 2;\n"
    "        if (half * 2 > value) { half = half - 1; }\n"
    "        value = half;\n"
    "    }\n"
    "    return value;\n"
    "}\n";

constexpr std::string_view power =
    "int NAME(int base, int exponent) {\n"
    "    int result = 1;\n"
    "    for (int step = 0; step < exponent; step++) { result = result * base; }\n"
    "    return result;\n"
    "}\n";

constexpr std::array helpers = {
    Helper{Word::BitAnd, "bitsInBoth", bits},
    Helper{Word::BitOr, "bitsInAny", bits},
    Helper{Word::BitXor, "bitsInOne", bits},
    Helper{Word::ShiftLeft, "shiftedLeft", shiftLeft},
    Helper{Word::ShiftRight, "shiftedRight", shiftRight},
    Helper{Word::Power, "power", power},
};

struct Pairing {
    Word assignment;
    Word op;
};

constexpr std::array assignments = {
    Pairing{Word::BitAndAssign, Word::BitAnd},
    Pairing{Word::BitOrAssign, Word::BitOr},
    Pairing{Word::BitXorAssign, Word::BitXor},
    Pairing{Word::ShiftLeftAssign, Word::ShiftLeft},
    Pairing{Word::ShiftRightAssign, Word::ShiftRight},
};

std::string replaced(std::string text, std::string_view word, std::string_view instead) {
    const std::size_t at = text.find(word);
    return at == text.npos ? text : text.replace(at, word.size(), instead);
}

bool isPowerOfTwo(std::uint64_t value) {
    return value != 0 && (value & (value - 1)) == 0;
}

}  // namespace

/// The operator of an assignment like `&=`; End for others.
Word Repairer::bitOperatorOf(Word assignment) {
    for (const Pairing& pairing : assignments) {
        if (pairing.assignment == assignment) {
            return pairing.op;
        }
    }
    return Word::End;
}

bool Repairer::isBitOperator(Word op) {
    for (const Helper& helper : helpers) {
        if (helper.op == op) {
            return true;
        }
    }
    return false;
}

/// The functions that were needed.
std::string Repairer::addedFunctions() const {
    std::string all = wholeName.empty() ? std::string{} : wholeFunction();
    for (const Helper& helper : helpers) {
        const auto entry = helperNames.find(helper.op);
        if (entry != helperNames.end()) {
            const std::string_view choice = helper.op == Word::BitAnd  ? "== 2"
                                            : helper.op == Word::BitOr ? "> 0"
                                                                       : "== 1";
            all += "\n" + replaced(replaced(std::string{helper.text}, "NAME", entry->second),
                                   "CHOICE", choice);
        }
    }
    return all;
}

/// The operation as arithmetic: by a literal on its right side. Empty when it needs a function.
std::string Repairer::asArithmetic(NodeId id, Word op, Pieces& text) {
    const NodeId left = tree[id].first;
    const NodeId right = tree.child(id, 1);
    const NodeId literal = inner(right);
    const Number number = numberOf(tree.textOf(literal));
    constexpr std::uint64_t mostShifts = 30;
    if (tree[literal].kind != Kind::Literal || !number.isKnown || number.isDouble) {
        return {};
    }
    const std::uint64_t value = number.whole;
    if (op == Word::BitAnd && isPowerOfTwo(value + 1) && value > 0 && value < 2147483647U) {
        const std::string atom = atomFor(left, "dividend", std::move(text));
        const std::string divisor = std::to_string(value + 1);
        const std::string rest = atom + " - " + atom + " / " + divisor + " * " + divisor;
        return isOperand(id) ? "(" + rest + ")" : rest;
    }
    const bool isShift = op == Word::ShiftLeft || op == Word::ShiftRight;
    if (!isShift || value > mostShifts) {
        return {};
    }
    const NodeId core = tree[left].kind == Kind::Parentheses ? left : inner(left);
    const bool bare = tree[core].kind != Kind::Binary && tree[core].kind != Kind::Unary;
    const std::string written = bare ? textOf(text) : "(" + textOf(text) + ")";
    return written + (op == Word::ShiftLeft ? " * " : " / ") + std::to_string(1ULL << value);
}

/// `&` and `|` between truths.
Pieces Repairer::logical(NodeId id, const Context& context, Pieces&& left) {
    const std::string op = tree[id].op == Word::BitAnd ? "&&" : "||";
    say("bit-operator", Severity::Error, tree.wordRange(id),
        "there is no operator `" + std::string{tree.wordOf(id)} + "`", "write " + quoted(op));
    left.insert(" " + op + " ", tree.wordRange(id));
    expression(tree.child(id, 1), operandContext(id, context), left);
    return std::move(left);
}

/// `~x`
void Repairer::complement(NodeId id, Pieces& out) {
    const NodeId operand = tree[id].first;
    Pieces value;
    Context context;
    context.want = Word::Int;
    expression(operand, context, value);
    const std::string rest = "-1 - " + atomFor(operand, "bits", std::move(value));
    const std::string instead = isOperand(id) ? "(" + rest + ")" : rest;
    say("bit-operator", Severity::Error, tree.wordRange(id), "there is no operator `~`",
        "write " + quoted(instead));
    out.insert(instead, tree[id].range);
}

/// An operation with bits, or a power.
Pieces Repairer::bitOperation(NodeId id, Word op, const Context& context, Pieces&& left) {
    const NodeId first = tree[id].first;
    const NodeId second = tree.child(id, 1);
    const SourceRange range = tree[id].range;
    if (model.meant(first) == Word::Boolean && model.meant(second) == Word::Boolean &&
        (op == Word::BitAnd || op == Word::BitOr)) {
        return logical(id, context, std::move(left));
    }
    const NodeId firstCall = firstCallInPlace;
    Pieces result;
    const std::size_t before = prelude.size();
    std::string instead = asArithmetic(id, op, left);
    const std::string declared = declarationsSince(before);
    const bool isAdded = instead.empty();
    if (instead.empty()) {
        std::string& name = helperNames[op];
        for (const Helper& helper : helpers) {
            name = helper.op == op && name.empty() ? freshFunction(std::string{helper.name}) : name;
        }
        Pieces right;
        Context inside;
        inside.want = Word::Int;
        expression(second, inside, right);
        instead = name + "(" + textOf(left) + ", " + textOf(right) + ")";
        if (!context.calls || !context.typed || id < hoistCallsBefore) {
            firstCallInPlace = firstCall;
            Pieces call;
            call.insert(instead, range);
            result.insert(hoist(Word::Int, "bits", std::move(call), id), range);
        }
    }
    const std::string word{tree.wordOf(id)};
    const bool isStatement = tree[id].kind == Kind::Assign;
    const std::string text =
        (isStatement ? std::string{tree.textOf(first)} + " = " : std::string{}) + instead;
    say("bit-operator", Severity::Error, tree.wordRange(id), "there is no operator `" + word + "`",
        (declared.empty() ? "write " : "store it first, " + quoted(declared) + ", and write ") +
            quoted(text) + (isAdded ? ", a function that `--fix` adds to the program" : ""));
    if (result.empty()) {
        result.insert(instead, range);
    }
    return result;
}

}  // namespace krel::Check
